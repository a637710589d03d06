/// Data that only the effect understands: what the host asks of it in PF_Cmd_ARBITRARY_CALLBACK.
///
/// Every handle that the effect makes for one of these belongs to the host, which ends it by DISPOSE and no other way.
#pragma once

#include "ae/Params.h"
#include "ae/Scalars.h"

using PF_FunctionSelector = int32_t;
using PF_ArbCompareResult = int32_t;
using PF_ArbPrintFlags = int32_t;

inline constexpr PF_FunctionSelector PF_Arbitrary_NEW_FUNC = 0;
inline constexpr PF_FunctionSelector PF_Arbitrary_DISPOSE_FUNC = 1;
inline constexpr PF_FunctionSelector PF_Arbitrary_COPY_FUNC = 2;
inline constexpr PF_FunctionSelector PF_Arbitrary_FLAT_SIZE_FUNC = 3;
inline constexpr PF_FunctionSelector PF_Arbitrary_FLATTEN_FUNC = 4;
inline constexpr PF_FunctionSelector PF_Arbitrary_UNFLATTEN_FUNC = 5;
inline constexpr PF_FunctionSelector PF_Arbitrary_INTERP_FUNC = 6;
inline constexpr PF_FunctionSelector PF_Arbitrary_COMPARE_FUNC = 7;
inline constexpr PF_FunctionSelector PF_Arbitrary_PRINT_SIZE_FUNC = 8;
inline constexpr PF_FunctionSelector PF_Arbitrary_PRINT_FUNC = 9;
inline constexpr PF_FunctionSelector PF_Arbitrary_SCAN_FUNC = 10;

inline constexpr PF_ArbCompareResult PF_ArbCompare_EQUAL = 0;
inline constexpr PF_ArbCompareResult PF_ArbCompare_LESS = 1;
inline constexpr PF_ArbCompareResult PF_ArbCompare_MORE = 2;
inline constexpr PF_ArbCompareResult PF_ArbCompare_NOT_EQUAL = 3;

// One record a selector. Names that end in PH, PLu or P point at what the effect fills in.
struct PF_ArbNewParams {
  void* refconPV;
  PF_ArbitraryH* arbPH;
};
struct PF_ArbDisposeParams {
  void* refconPV;
  PF_ArbitraryH arbH;
};
struct PF_ArbCopyParams {
  void* refconPV;
  PF_ArbitraryH src_arbH;
  PF_ArbitraryH* dst_arbPH;
};
struct PF_ArbFlatSizeParams {
  void* refconPV;
  PF_ArbitraryH arbH;
  A_u_long* flat_data_sizePLu;
};
struct PF_ArbFlattenParams {
  void* refconPV;
  PF_ArbitraryH arbH;
  A_u_long buf_sizeLu;
  void* flat_dataPV;
};
struct PF_ArbUnflattenParams {
  void* refconPV;
  A_u_long buf_sizeLu;
  const void* flat_dataPV;
  PF_ArbitraryH* arbPH;
};
struct PF_ArbInterpParams {
  void* refconPV;
  PF_ArbitraryH left_arbH;
  PF_ArbitraryH right_arbH;
  PF_FpLong tF;
  PF_ArbitraryH* interpPH;
};
struct PF_ArbCompareParams {
  void* refconPV;
  PF_ArbitraryH a_arbH;
  PF_ArbitraryH b_arbH;
  A_long* compareP;
};
struct PF_ArbPrintSizeParams {
  void* refconPV;
  PF_ArbitraryH arbH;
  A_u_long* print_sizePLu;
};
struct PF_ArbPrintParams {
  void* refconPV;
  A_long print_flags;
  PF_ArbitraryH arbH;
  A_u_long print_sizeLu;
  A_char* print_bufferPC;
};
struct PF_ArbScanParams {
  void* refconPV;
  const A_char* bufPC;
  A_u_long bytes_to_scanLu;
  PF_ArbitraryH* arbPH;
};

/// The extra of the command.
struct PF_ArbParamsExtra {
  PF_FunctionSelector which_function;  ///< chooses the member of u
  A_short id;                          ///< of the definition's arb_d, not of the parameter
  A_short padding;
  union {
    PF_ArbNewParams new_func_params;
    PF_ArbDisposeParams dispose_func_params;
    PF_ArbCopyParams copy_func_params;
    PF_ArbFlatSizeParams flatsize_func_params;
    PF_ArbFlattenParams flatten_func_params;
    PF_ArbUnflattenParams unflatten_func_params;
    PF_ArbInterpParams interp_func_params;
    PF_ArbCompareParams compare_func_params;
    PF_ArbPrintSizeParams printsize_func_params;
    PF_ArbPrintParams print_func_params;
    PF_ArbScanParams scan_func_params;
  } u;
};

// Layout, identical on 64-bit Windows and on Linux x86-64. A compiler that disagrees must not build. WebAssembly has
// pointers of 32 bits; there the module and the host are one program, and no saved byte depends on these records.
#ifndef __wasm32__
static_assert(sizeof(PF_ArbParamsExtra) == 48 && alignof(PF_ArbParamsExtra) == 8);
static_assert(offsetof(PF_ArbParamsExtra, id) == 4 && offsetof(PF_ArbParamsExtra, u) == 8);
static_assert(offsetof(PF_ArbNewParams, refconPV) == 0);
static_assert(offsetof(PF_ArbNewParams, arbPH) == 8);
static_assert(offsetof(PF_ArbDisposeParams, refconPV) == 0);
static_assert(offsetof(PF_ArbDisposeParams, arbH) == 8);
static_assert(offsetof(PF_ArbCopyParams, refconPV) == 0);
static_assert(offsetof(PF_ArbCopyParams, src_arbH) == 8);
static_assert(offsetof(PF_ArbCopyParams, dst_arbPH) == 16);
static_assert(offsetof(PF_ArbFlatSizeParams, refconPV) == 0);
static_assert(offsetof(PF_ArbFlatSizeParams, arbH) == 8);
static_assert(offsetof(PF_ArbFlatSizeParams, flat_data_sizePLu) == 16);
static_assert(offsetof(PF_ArbFlattenParams, refconPV) == 0);
static_assert(offsetof(PF_ArbFlattenParams, arbH) == 8);
static_assert(offsetof(PF_ArbFlattenParams, buf_sizeLu) == 16);
static_assert(offsetof(PF_ArbFlattenParams, flat_dataPV) == 24);
static_assert(offsetof(PF_ArbUnflattenParams, refconPV) == 0);
static_assert(offsetof(PF_ArbUnflattenParams, buf_sizeLu) == 8);
static_assert(offsetof(PF_ArbUnflattenParams, flat_dataPV) == 16);
static_assert(offsetof(PF_ArbUnflattenParams, arbPH) == 24);
static_assert(offsetof(PF_ArbInterpParams, refconPV) == 0);
static_assert(offsetof(PF_ArbInterpParams, left_arbH) == 8);
static_assert(offsetof(PF_ArbInterpParams, right_arbH) == 16);
static_assert(offsetof(PF_ArbInterpParams, tF) == 24);
static_assert(offsetof(PF_ArbInterpParams, interpPH) == 32);
static_assert(offsetof(PF_ArbCompareParams, refconPV) == 0);
static_assert(offsetof(PF_ArbCompareParams, a_arbH) == 8);
static_assert(offsetof(PF_ArbCompareParams, b_arbH) == 16);
static_assert(offsetof(PF_ArbCompareParams, compareP) == 24);
static_assert(offsetof(PF_ArbPrintSizeParams, refconPV) == 0);
static_assert(offsetof(PF_ArbPrintSizeParams, arbH) == 8);
static_assert(offsetof(PF_ArbPrintSizeParams, print_sizePLu) == 16);
static_assert(offsetof(PF_ArbPrintParams, refconPV) == 0);
static_assert(offsetof(PF_ArbPrintParams, print_flags) == 8);
static_assert(offsetof(PF_ArbPrintParams, arbH) == 16);
static_assert(offsetof(PF_ArbPrintParams, print_sizeLu) == 24);
static_assert(offsetof(PF_ArbPrintParams, print_bufferPC) == 32);
static_assert(offsetof(PF_ArbScanParams, refconPV) == 0);
static_assert(offsetof(PF_ArbScanParams, bufPC) == 8);
static_assert(offsetof(PF_ArbScanParams, bytes_to_scanLu) == 16);
static_assert(offsetof(PF_ArbScanParams, arbPH) == 24);
#endif
