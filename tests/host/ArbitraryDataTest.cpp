// What the host makes of an effect's answers about data that only the effect understands.
#include <cstring>
#include <set>
#include <string>

#include "HostTest.h"
#include "ae/ArbitraryData.h"

namespace {

using scripted::Call;
using standin::ByIndex;
using standin::Matter;

/// An effect with one such parameter, "Data": a handle with one byte, its text that byte alone.
class Arbitrary : public scripted::HostTest {
 protected:
  Arbitrary() {
    declare(nullptr);
    effect.on[PF_Cmd_ARBITRARY_CALLBACK] = [this](const Call& call) {
      auto& extra = *static_cast<PF_ArbParamsExtra*>(call.extra);
      EXPECT_EQ(extra.id, 33);
      asked.push_back(extra.which_function);
      if (refused.contains(extra.which_function)) return PF_Err{PF_Err_INTERNAL_STRUCT_DAMAGED};
      return answer(extra);
    };
  }

  void declare(PF_ArbitraryH dephault) {
    PF_ParamDef data = scripted::definition(PF_Param_ARBITRARY_DATA, "Data", 1);
    data.u.arb_d.id = 33;
    data.u.arb_d.dephault = dephault;
    scripted::declare(effect, {data, scripted::definition(PF_Param_SLIDER, "Slider", 2)});
  }

  PF_ArbitraryH made(char letter) {
    PF_Handle handle = host.utils()->host_new_handle(1);
    *static_cast<char*>(*handle) = letter;
    return handle;
  }
  static char letterOf(PF_ArbitraryH handle) { return *static_cast<const char*>(*handle); }

  PF_Err answer(PF_ArbParamsExtra& extra) {
    auto& u = extra.u;
    switch (extra.which_function) {
      case PF_Arbitrary_NEW_FUNC:
        *u.new_func_params.arbPH = made('n');
        break;
      case PF_Arbitrary_DISPOSE_FUNC:
        host.utils()->host_dispose_handle(u.dispose_func_params.arbH);
        break;
      case PF_Arbitrary_COPY_FUNC:
        *u.copy_func_params.dst_arbPH = made(letterOf(u.copy_func_params.src_arbH));
        break;
      case PF_Arbitrary_FLAT_SIZE_FUNC:
        *u.flatsize_func_params.flat_data_sizePLu = 1;
        break;
      case PF_Arbitrary_FLATTEN_FUNC:
        *static_cast<char*>(u.flatten_func_params.flat_dataPV) = letterOf(u.flatten_func_params.arbH);
        break;
      case PF_Arbitrary_UNFLATTEN_FUNC:
        *u.unflatten_func_params.arbPH = made(*static_cast<const char*>(u.unflatten_func_params.flat_dataPV));
        break;
      case PF_Arbitrary_PRINT_SIZE_FUNC:
        *u.printsize_func_params.print_sizePLu = 1;
        break;
      case PF_Arbitrary_PRINT_FUNC:
        *u.print_func_params.print_bufferPC = letterOf(u.print_func_params.arbH);
        break;
      case PF_Arbitrary_SCAN_FUNC:
        *u.scan_func_params.arbPH = made(*u.scan_func_params.bufPC);
        break;
      default:
        ADD_FAILURE() << "asked for " << extra.which_function;
    }
    return PF_Err_NONE;
  }

  std::set<PF_FunctionSelector> refused;
  std::vector<PF_FunctionSelector> asked;
};

TEST_F(Arbitrary, aDefaultOfNullIsAskedOfTheEffectAndItsValueIsACopy) {
  EXPECT_EQ(host.start(), PF_Err_NONE);
  EXPECT_EQ(asked, (std::vector<PF_FunctionSelector>{PF_Arbitrary_NEW_FUNC, PF_Arbitrary_COPY_FUNC}));
  EXPECT_EQ(host.arbitraryText("Data"), "n");
  EXPECT_EQ(host.finish(), PF_Err_NONE);
  EXPECT_EQ(report(), "") << "both were disposed of";
}

TEST_F(Arbitrary, aDeclaredDefaultIsCopiedAndNoOtherIsAskedFor) {
  declare(made('d'));
  EXPECT_EQ(host.start(), PF_Err_NONE);
  EXPECT_EQ(asked, std::vector<PF_FunctionSelector>{PF_Arbitrary_COPY_FUNC});
  EXPECT_EQ(host.arbitraryText("Data"), "d");
  EXPECT_EQ(host.finish(), PF_Err_NONE);
  EXPECT_EQ(report(), "");
}

TEST_F(Arbitrary, aParameterWithoutAValueIsAComplaint) {
  for (const PF_FunctionSelector missing : {PF_Arbitrary_NEW_FUNC, PF_Arbitrary_COPY_FUNC}) {
    refused = {missing};
    EXPECT_EQ(host.start(), PF_Err_NONE);
    ASSERT_EQ(host.books().complaints().size(), 1U) << report();
    EXPECT_EQ(host.books().complaints()[0].text, "parameter 1 \"Data\" of arbitrary data has no value");
    EXPECT_EQ(host.books().complaints()[0].matter, Matter::kDeclaration);
    EXPECT_EQ(host.finish(), PF_Err_NONE);
    host.books().clear();
  }
}

TEST_F(Arbitrary, whatTheEffectCantFlattenIsEmpty) {
  EXPECT_EQ(host.start(), PF_Err_NONE);
  EXPECT_EQ(host.arbitraryBytes("Data"), std::vector<uint8_t>{'n'});
  for (const PF_FunctionSelector failing : {PF_Arbitrary_FLAT_SIZE_FUNC, PF_Arbitrary_FLATTEN_FUNC}) {
    refused = {failing};
    EXPECT_EQ(host.arbitraryBytes("Data"), std::vector<uint8_t>{}) << failing;
  }
  for (const PF_FunctionSelector failing : {PF_Arbitrary_PRINT_SIZE_FUNC, PF_Arbitrary_PRINT_FUNC}) {
    refused = {failing};
    EXPECT_EQ(host.arbitraryText("Data"), "") << failing;
  }
}

TEST_F(Arbitrary, aNewValueReplacesTheOldOneAndARefusedOneDoesNot) {
  EXPECT_EQ(host.start(), PF_Err_NONE);
  EXPECT_TRUE(host.setArbitraryText("Data", "t"));
  EXPECT_EQ(host.arbitraryText("Data"), "t");
  EXPECT_TRUE(host.setArbitraryBytes("Data", {'b'}));
  EXPECT_EQ(host.arbitraryText("Data"), "b");
  refused = {PF_Arbitrary_SCAN_FUNC, PF_Arbitrary_UNFLATTEN_FUNC};
  EXPECT_FALSE(host.setArbitraryText("Data", "x"));
  EXPECT_FALSE(host.setArbitraryBytes("Data", {'x'}));
  EXPECT_EQ(host.arbitraryText("Data"), "b");
  EXPECT_EQ(host.finish(), PF_Err_NONE);
  EXPECT_EQ(report(), "") << "each that was replaced was disposed of";
}

TEST_F(Arbitrary, anotherListOfParametersEndsTheValuesOfTheOneBefore) {
  EXPECT_EQ(host.start(), PF_Err_NONE);
  EXPECT_EQ(host.books().openCount(Matter::kHandle), 2);
  EXPECT_EQ(host.paramsSetup(), PF_Err_NONE);
  EXPECT_EQ(host.books().openCount(Matter::kHandle), 2);
  EXPECT_EQ(host.finish(), PF_Err_NONE);
  EXPECT_EQ(host.books().openCount(Matter::kHandle), 0);
}

TEST_F(Arbitrary, aControlThatIsNoneOrOfAnotherKindIsToldByItsName) {
  EXPECT_EQ(host.start(), PF_Err_NONE);
  const auto told = [&](const standin::ControlKey& key) -> std::string {
    try {
      host.arbitraryBytes(key);
    } catch (const std::out_of_range& error) {
      return std::string("range: ") + error.what();
    } catch (const std::invalid_argument& error) {
      return std::string("kind: ") + error.what();
    }
    return "nothing";
  };
  EXPECT_EQ(told("Nobody"), "range: there is no control \"Nobody\"");
  EXPECT_EQ(told(standin::ById{7}), "range: there is no control id 7");
  EXPECT_EQ(told(ByIndex{7}), "range: there is no control index 7");
  EXPECT_EQ(told("Slider"), "kind: the control \"Slider\" is not of arbitrary data");
  EXPECT_EQ(told("Data"), "nothing");
}

}  // namespace
