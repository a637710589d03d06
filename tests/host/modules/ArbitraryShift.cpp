// A parameter of arbitrary data: three numbers that are added to red, green and blue. Serves every question that a host
// asks about such data.
#include <algorithm>
#include <cstdio>
#include <cstring>

#include "ModuleParts.h"
#include "ae/ArbitraryData.h"

namespace {

struct Shift {
  A_long amount[3];
};
constexpr A_short kShiftId = 77;
void* const kRefcon = const_cast<char*>("shift");

PF_ArbitraryH make(PF_InData* in_data, const Shift& shift) {
  PF_Handle handle = in_data->utils->host_new_handle(sizeof(Shift));
  if (handle == nullptr) return nullptr;
  std::memcpy(in_data->utils->host_lock_handle(handle), &shift, sizeof shift);
  in_data->utils->host_unlock_handle(handle);
  return handle;
}

Shift read(PF_InData* in_data, PF_ArbitraryH handle) {
  Shift shift{};
  if (handle == nullptr) return shift;
  std::memcpy(&shift, in_data->utils->host_lock_handle(handle), sizeof shift);
  in_data->utils->host_unlock_handle(handle);
  return shift;
}

PF_Err answerNew(PF_InData* in_data, const Shift& shift, PF_ArbitraryH* to) {
  *to = make(in_data, shift);
  return *to == nullptr ? PF_Err_OUT_OF_MEMORY : PF_Err_NONE;
}

int print(const Shift& shift, char* text, size_t size) {
  return std::snprintf(text, size, "%d %d %d", static_cast<int>(shift.amount[0]), static_cast<int>(shift.amount[1]),
                       static_cast<int>(shift.amount[2]));
}

PF_Err answer(PF_InData* in_data, PF_ArbParamsExtra& extra) {
  if (extra.id != kShiftId || extra.u.new_func_params.refconPV != kRefcon) return PF_Err_INTERNAL_STRUCT_DAMAGED;
  auto& u = extra.u;
  switch (extra.which_function) {
    case PF_Arbitrary_NEW_FUNC:
      return answerNew(in_data, Shift{}, u.new_func_params.arbPH);
    case PF_Arbitrary_DISPOSE_FUNC:
      in_data->utils->host_dispose_handle(u.dispose_func_params.arbH);
      return PF_Err_NONE;
    case PF_Arbitrary_COPY_FUNC:
      return answerNew(in_data, read(in_data, u.copy_func_params.src_arbH), u.copy_func_params.dst_arbPH);
    case PF_Arbitrary_FLAT_SIZE_FUNC:
      *u.flatsize_func_params.flat_data_sizePLu = sizeof(Shift);
      return PF_Err_NONE;
    case PF_Arbitrary_FLATTEN_FUNC: {
      const Shift shift = read(in_data, u.flatten_func_params.arbH);
      std::memcpy(u.flatten_func_params.flat_dataPV, &shift, sizeof shift);
      return PF_Err_NONE;
    }
    case PF_Arbitrary_UNFLATTEN_FUNC: {
      Shift shift{};
      if (u.unflatten_func_params.buf_sizeLu != sizeof shift) return PF_Err_INTERNAL_STRUCT_DAMAGED;
      std::memcpy(&shift, u.unflatten_func_params.flat_dataPV, sizeof shift);
      return answerNew(in_data, shift, u.unflatten_func_params.arbPH);
    }
    case PF_Arbitrary_INTERP_FUNC: {
      const Shift left = read(in_data, u.interp_func_params.left_arbH);
      const Shift right = read(in_data, u.interp_func_params.right_arbH);
      Shift shift{};
      for (int c = 0; c < 3; ++c) {
        const double way = static_cast<double>(right.amount[c] - left.amount[c]) * u.interp_func_params.tF;
        shift.amount[c] = left.amount[c] + static_cast<A_long>(way);
      }
      return answerNew(in_data, shift, u.interp_func_params.interpPH);
    }
    case PF_Arbitrary_COMPARE_FUNC: {
      const Shift a = read(in_data, u.compare_func_params.a_arbH);
      const Shift b = read(in_data, u.compare_func_params.b_arbH);
      *u.compare_func_params.compareP =
          std::memcmp(&a, &b, sizeof a) == 0 ? PF_ArbCompare_EQUAL : PF_ArbCompare_NOT_EQUAL;
      return PF_Err_NONE;
    }
    case PF_Arbitrary_PRINT_SIZE_FUNC:
      *u.printsize_func_params.print_sizePLu =
          static_cast<A_u_long>(print(read(in_data, u.printsize_func_params.arbH), nullptr, 0)) + 1;
      return PF_Err_NONE;
    case PF_Arbitrary_PRINT_FUNC:
      print(read(in_data, u.print_func_params.arbH), u.print_func_params.print_bufferPC,
            u.print_func_params.print_sizeLu);
      return PF_Err_NONE;
    case PF_Arbitrary_SCAN_FUNC: {
      int v[3];
      if (std::sscanf(u.scan_func_params.bufPC, "%d %d %d", &v[0], &v[1], &v[2]) != 3) {
        return PF_Err_CANNOT_PARSE_KEYFRAME_TEXT;
      }
      return answerNew(in_data, Shift{{v[0], v[1], v[2]}}, u.scan_func_params.arbPH);
    }
    default:
      return PF_Err_BAD_CALLBACK_PARAM;
  }
}

PF_Err shiftPixel(void* refcon, A_long, A_long, PF_Pixel* in, PF_Pixel* out) {
  const auto& shift = *static_cast<const Shift*>(refcon);
  const auto moved = [&](A_u_char value, int c) {
    return static_cast<A_u_char>(std::clamp<A_long>(value + shift.amount[c], 0, 255));
  };
  *out = {in->alpha, moved(in->red, 0), moved(in->green, 1), moved(in->blue, 2)};
  return PF_Err_NONE;
}

PF_Err paramsSetup(PF_InData* in_data, PF_OutData* out_data) {
  PF_ParamDef def{};
  def.param_type = PF_Param_ARBITRARY_DATA;
  def.uu.id = 1;
  std::strcpy(def.name, "Shift");
  def.u.arb_d.id = kShiftId;
  def.u.arb_d.refconPV = kRefcon;
  def.u.arb_d.dephault = make(in_data, Shift{{10, 0, -10}});
  out_data->num_params = 2;
  return in_data->inter.add_param(in_data->effect_ref, -1, &def);
}

}  // namespace

extern "C" PF_Err entryPointFunc(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                                 PF_LayerDef* output, void* extra) {
  switch (cmd) {
    case PF_Cmd_GLOBAL_SETUP:
      out_data->my_version = 1;
      return PF_Err_NONE;
    case PF_Cmd_PARAMS_SETUP:
      return paramsSetup(in_data, out_data);
    case PF_Cmd_ARBITRARY_CALLBACK:
      return answer(in_data, *static_cast<PF_ArbParamsExtra*>(extra));
    case PF_Cmd_RENDER: {
      Shift shift = read(in_data, params[1]->u.arb_d.value);
      return in_data->utils->iterate(in_data, 0, output->height, &params[0]->u.ld, nullptr, &shift, shiftPixel, output);
    }
    default:
      return PF_Err_NONE;
  }
}
