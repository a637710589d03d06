/// Parameters: what the effect describes at add_param and what the host fills in with values.
///
/// A record belongs to whoever declared it: elements of params to the host, a checked-out record to the caller.
#pragma once

#include "ae/Pixels.h"
#include "ae/Scalars.h"
#include "ae/Worlds.h"

/// A slider of whole numbers (PF_Param_SLIDER).
struct PF_SliderDef {
  PF_ParamValue value;       ///< the value now
  A_char value_str[32];      ///< unused text of the value
  A_char value_desc[32];     ///< unused text of the unit
  PF_ParamValue valid_min;   ///< least value that can be typed
  PF_ParamValue valid_max;   ///< greatest value that can be typed
  PF_ParamValue slider_min;  ///< left end of the track
  PF_ParamValue slider_max;  ///< right end of the track
  PF_ParamValue dephault;    ///< value of a new instance
};

/// A slider of 16.16 numbers (PF_Param_FIX_SLIDER).
struct PF_FixedSliderDef {
  PF_Fixed value;  ///< 16.16
  A_char value_str[32];
  A_char value_desc[32];
  PF_Fixed valid_min;
  PF_Fixed valid_max;
  PF_Fixed slider_min;
  PF_Fixed slider_max;
  PF_Fixed dephault;
  A_short precision;                   ///< decimals shown
  PF_ValueDisplayFlags display_flags;  ///< PF_ValueDisplayFlag_*
};

/// A slider of real numbers (PF_Param_FLOAT_SLIDER). The value is a double, the limits are floats.
struct PF_FloatSliderDef {
  PF_FpLong value;  ///< the value now, in the slider's own units: 0..100 when shown as percent
  PF_FpLong phase;  ///< unused without WANT_PHASE
  A_char value_desc[32];
  PF_FpShort valid_min;                ///< least value that can be typed
  PF_FpShort valid_max;                ///< greatest value that can be typed
  PF_FpShort slider_min;               ///< left end of the track
  PF_FpShort slider_max;               ///< right end of the track
  PF_FpShort dephault;                 ///< value of a new instance
  A_short precision;                   ///< decimals shown
  PF_ValueDisplayFlags display_flags;  ///< PF_ValueDisplayFlag_*
  PF_FSliderFlags fs_flags;            ///< PF_FSliderFlag_*
  PF_FpShort curve_tolerance;          ///< for audio; unused
  PF_Boolean useExponent;
  PF_FpShort exponent;
};

/// An angle (PF_Param_ANGLE) in 16.16 degrees, not limited to one turn.
struct PF_AngleDef {
  PF_Fixed value;      ///< degrees, 16.16
  PF_Fixed dephault;   ///< degrees, 16.16
  PF_Fixed valid_min;  ///< unused by the host
  PF_Fixed valid_max;  ///< unused by the host
};

/// A check box (PF_Param_CHECKBOX).
struct PF_CheckBoxDef {
  PF_ParamValue value;  ///< 0 or 1
  PF_Boolean dephault;  ///< 0 or 1
  A_char reserved;
  A_short reserved1;
  union {
    const A_char* nameptr;  ///< text beside the box; the host copies it at add_param
  } u;
};

/// A colour (PF_Param_COLOR); alpha has no meaning.
struct PF_ColorDef {
  PF_UnionablePixel value;     ///< the colour now
  PF_UnionablePixel dephault;  ///< colour of a new instance
};

/// A place in the layer (PF_Param_POINT).
struct PF_PointDef {
  PF_Fixed x_value;  ///< pixels at the current resolution, 16.16
  PF_Fixed y_value;  ///< pixels at the current resolution, 16.16
  A_char reserved[3];
  PF_Boolean restrict_bounds;  ///< not 0: stays inside the layer
  PF_Fixed x_dephault;         ///< percent of the layer's width, 16.16
  PF_Fixed y_dephault;         ///< percent of the layer's height, 16.16
};

/// A list to pick from (PF_Param_POPUP).
struct PF_PopupDef {
  PF_ParamValue value;  ///< counted from 1
  A_short num_choices;  ///< items, separator lines included
  A_short dephault;     ///< counted from 1
  union {
    const A_char* namesptr;  ///< items with | between; the host copies it at add_param
  } u;
};

/// A place in space (PF_Param_POINT_3D).
struct PF_Point3DDef {
  PF_FpLong x_value;
  PF_FpLong y_value;
  PF_FpLong z_value;
  PF_FpLong x_dephault;
  PF_FpLong y_dephault;
  PF_FpLong z_dephault;
  char reserved[16];
};

/// A button (PF_Param_BUTTON).
struct PF_ButtonDef {
  PF_ParamValue value;
  union {
    const A_char* namesptr;  ///< text on the button; the host copies it at add_param
  } u;
};

/// One of the layer's masks (PF_Param_PATH).
struct PF_PathDef {
  PF_PathID path_id;  ///< 0 for none
  A_long reserved0;
  A_long dephault;
};

/// Data that only the effect understands (PF_Param_ARBITRARY_DATA).
struct PF_ArbitraryDef {
  A_short id;
  A_short pad;
  PF_ArbitraryH dephault;
  PF_ArbitraryH value;
  void* refconPV;
};

/// What differs by param_type. All members begin at the same byte; ld is the largest.
union PF_ParamDefUnion {
  PF_LayerDef ld;
  PF_SliderDef sd;
  PF_FixedSliderDef fd;
  PF_AngleDef ad;
  PF_CheckBoxDef bd;
  PF_ColorDef cd;
  PF_PointDef td;
  PF_PopupDef pd;
  PF_FloatSliderDef fs_d;
  PF_ArbitraryDef arb_d;
  PF_PathDef path_d;
  PF_ButtonDef button_d;
  PF_Point3DDef point3d_d;
};

/// One parameter: its definition at add_param, its value at every later moment.
struct PF_ParamDef {
  union {
    A_long id;  ///< read at add_param: 1..9999, never changed once projects hold it
    PF_ChangeFlags
        change_flags;  ///< later: PF_ChangeFlag_*, cleared by the host and set by the effect. The same four bytes as id
  } uu;
  PF_ParamUIFlags ui_flags;  ///< PF_PUI_*
  A_short ui_width;          ///< pixels; custom controls only
  A_short ui_height;         ///< pixels; custom controls only
  PF_ParamType param_type;   ///< PF_Param_*
  A_char name[32];           ///< zero-ended, at most 31 characters
  PF_ParamFlags flags;       ///< PF_ParamFlag_*
  A_long unused;
  PF_ParamDefUnion u;  ///< chosen by param_type
};

/// The extra of PF_Cmd_USER_CHANGED_PARAM.
struct PF_UserChangedParamExtra {
  PF_ParamIndex param_index;  ///< place in params; 0 is the layer itself
};

// Layout, identical on 64-bit Windows and on Linux x86-64. A compiler that disagrees must not build. WebAssembly has
// pointers of 32 bits; there the module and the host are one program, and no saved byte depends on these records.
#ifndef __wasm32__
static_assert(sizeof(PF_SliderDef) == 88 && alignof(PF_SliderDef) == 4);
static_assert(offsetof(PF_SliderDef, value) == 0 && sizeof(PF_SliderDef::value) == 4);
static_assert(offsetof(PF_SliderDef, value_str) == 4 && sizeof(PF_SliderDef::value_str) == 32);
static_assert(offsetof(PF_SliderDef, value_desc) == 36 && sizeof(PF_SliderDef::value_desc) == 32);
static_assert(offsetof(PF_SliderDef, valid_min) == 68 && sizeof(PF_SliderDef::valid_min) == 4);
static_assert(offsetof(PF_SliderDef, valid_max) == 72 && sizeof(PF_SliderDef::valid_max) == 4);
static_assert(offsetof(PF_SliderDef, slider_min) == 76 && sizeof(PF_SliderDef::slider_min) == 4);
static_assert(offsetof(PF_SliderDef, slider_max) == 80 && sizeof(PF_SliderDef::slider_max) == 4);
static_assert(offsetof(PF_SliderDef, dephault) == 84 && sizeof(PF_SliderDef::dephault) == 4);
static_assert(sizeof(PF_FixedSliderDef) == 92 && alignof(PF_FixedSliderDef) == 4);
static_assert(offsetof(PF_FixedSliderDef, value) == 0 && sizeof(PF_FixedSliderDef::value) == 4);
static_assert(offsetof(PF_FixedSliderDef, value_str) == 4 && sizeof(PF_FixedSliderDef::value_str) == 32);
static_assert(offsetof(PF_FixedSliderDef, value_desc) == 36 && sizeof(PF_FixedSliderDef::value_desc) == 32);
static_assert(offsetof(PF_FixedSliderDef, valid_min) == 68 && sizeof(PF_FixedSliderDef::valid_min) == 4);
static_assert(offsetof(PF_FixedSliderDef, valid_max) == 72 && sizeof(PF_FixedSliderDef::valid_max) == 4);
static_assert(offsetof(PF_FixedSliderDef, slider_min) == 76 && sizeof(PF_FixedSliderDef::slider_min) == 4);
static_assert(offsetof(PF_FixedSliderDef, slider_max) == 80 && sizeof(PF_FixedSliderDef::slider_max) == 4);
static_assert(offsetof(PF_FixedSliderDef, dephault) == 84 && sizeof(PF_FixedSliderDef::dephault) == 4);
static_assert(offsetof(PF_FixedSliderDef, precision) == 88 && sizeof(PF_FixedSliderDef::precision) == 2);
static_assert(offsetof(PF_FixedSliderDef, display_flags) == 90 && sizeof(PF_FixedSliderDef::display_flags) == 2);
static_assert(sizeof(PF_FloatSliderDef) == 88 && alignof(PF_FloatSliderDef) == 8);
static_assert(offsetof(PF_FloatSliderDef, value) == 0 && sizeof(PF_FloatSliderDef::value) == 8);
static_assert(offsetof(PF_FloatSliderDef, phase) == 8 && sizeof(PF_FloatSliderDef::phase) == 8);
static_assert(offsetof(PF_FloatSliderDef, value_desc) == 16 && sizeof(PF_FloatSliderDef::value_desc) == 32);
static_assert(offsetof(PF_FloatSliderDef, valid_min) == 48 && sizeof(PF_FloatSliderDef::valid_min) == 4);
static_assert(offsetof(PF_FloatSliderDef, valid_max) == 52 && sizeof(PF_FloatSliderDef::valid_max) == 4);
static_assert(offsetof(PF_FloatSliderDef, slider_min) == 56 && sizeof(PF_FloatSliderDef::slider_min) == 4);
static_assert(offsetof(PF_FloatSliderDef, slider_max) == 60 && sizeof(PF_FloatSliderDef::slider_max) == 4);
static_assert(offsetof(PF_FloatSliderDef, dephault) == 64 && sizeof(PF_FloatSliderDef::dephault) == 4);
static_assert(offsetof(PF_FloatSliderDef, precision) == 68 && sizeof(PF_FloatSliderDef::precision) == 2);
static_assert(offsetof(PF_FloatSliderDef, display_flags) == 70 && sizeof(PF_FloatSliderDef::display_flags) == 2);
static_assert(offsetof(PF_FloatSliderDef, fs_flags) == 72 && sizeof(PF_FloatSliderDef::fs_flags) == 4);
static_assert(offsetof(PF_FloatSliderDef, curve_tolerance) == 76 && sizeof(PF_FloatSliderDef::curve_tolerance) == 4);
static_assert(offsetof(PF_FloatSliderDef, useExponent) == 80 && sizeof(PF_FloatSliderDef::useExponent) == 1);
static_assert(offsetof(PF_FloatSliderDef, exponent) == 84 && sizeof(PF_FloatSliderDef::exponent) == 4);
static_assert(sizeof(PF_AngleDef) == 16 && alignof(PF_AngleDef) == 4);
static_assert(offsetof(PF_AngleDef, value) == 0 && sizeof(PF_AngleDef::value) == 4);
static_assert(offsetof(PF_AngleDef, dephault) == 4 && sizeof(PF_AngleDef::dephault) == 4);
static_assert(offsetof(PF_AngleDef, valid_min) == 8 && sizeof(PF_AngleDef::valid_min) == 4);
static_assert(offsetof(PF_AngleDef, valid_max) == 12 && sizeof(PF_AngleDef::valid_max) == 4);
static_assert(sizeof(PF_CheckBoxDef) == 16 && alignof(PF_CheckBoxDef) == 8);
static_assert(offsetof(PF_CheckBoxDef, value) == 0 && sizeof(PF_CheckBoxDef::value) == 4);
static_assert(offsetof(PF_CheckBoxDef, dephault) == 4 && sizeof(PF_CheckBoxDef::dephault) == 1);
static_assert(offsetof(PF_CheckBoxDef, reserved) == 5 && sizeof(PF_CheckBoxDef::reserved) == 1);
static_assert(offsetof(PF_CheckBoxDef, reserved1) == 6 && sizeof(PF_CheckBoxDef::reserved1) == 2);
static_assert(offsetof(PF_CheckBoxDef, u) == 8 && sizeof(PF_CheckBoxDef::u) == 8);
static_assert(offsetof(PF_CheckBoxDef, u.nameptr) == 8 &&
              sizeof(static_cast<PF_CheckBoxDef*>(nullptr)->u.nameptr) == 8);
static_assert(sizeof(PF_ColorDef) == 8 && alignof(PF_ColorDef) == 1);
static_assert(offsetof(PF_ColorDef, value) == 0 && sizeof(PF_ColorDef::value) == 4);
static_assert(offsetof(PF_ColorDef, dephault) == 4 && sizeof(PF_ColorDef::dephault) == 4);
static_assert(sizeof(PF_PointDef) == 20 && alignof(PF_PointDef) == 4);
static_assert(offsetof(PF_PointDef, x_value) == 0 && sizeof(PF_PointDef::x_value) == 4);
static_assert(offsetof(PF_PointDef, y_value) == 4 && sizeof(PF_PointDef::y_value) == 4);
static_assert(offsetof(PF_PointDef, reserved) == 8 && sizeof(PF_PointDef::reserved) == 3);
static_assert(offsetof(PF_PointDef, restrict_bounds) == 11 && sizeof(PF_PointDef::restrict_bounds) == 1);
static_assert(offsetof(PF_PointDef, x_dephault) == 12 && sizeof(PF_PointDef::x_dephault) == 4);
static_assert(offsetof(PF_PointDef, y_dephault) == 16 && sizeof(PF_PointDef::y_dephault) == 4);
static_assert(sizeof(PF_PopupDef) == 16 && alignof(PF_PopupDef) == 8);
static_assert(offsetof(PF_PopupDef, value) == 0 && sizeof(PF_PopupDef::value) == 4);
static_assert(offsetof(PF_PopupDef, num_choices) == 4 && sizeof(PF_PopupDef::num_choices) == 2);
static_assert(offsetof(PF_PopupDef, dephault) == 6 && sizeof(PF_PopupDef::dephault) == 2);
static_assert(offsetof(PF_PopupDef, u) == 8 && sizeof(PF_PopupDef::u) == 8);
static_assert(offsetof(PF_PopupDef, u.namesptr) == 8 && sizeof(static_cast<PF_PopupDef*>(nullptr)->u.namesptr) == 8);
static_assert(sizeof(PF_Point3DDef) == 64 && alignof(PF_Point3DDef) == 8);
static_assert(offsetof(PF_Point3DDef, x_value) == 0 && sizeof(PF_Point3DDef::x_value) == 8);
static_assert(offsetof(PF_Point3DDef, y_value) == 8 && sizeof(PF_Point3DDef::y_value) == 8);
static_assert(offsetof(PF_Point3DDef, z_value) == 16 && sizeof(PF_Point3DDef::z_value) == 8);
static_assert(offsetof(PF_Point3DDef, x_dephault) == 24 && sizeof(PF_Point3DDef::x_dephault) == 8);
static_assert(offsetof(PF_Point3DDef, y_dephault) == 32 && sizeof(PF_Point3DDef::y_dephault) == 8);
static_assert(offsetof(PF_Point3DDef, z_dephault) == 40 && sizeof(PF_Point3DDef::z_dephault) == 8);
static_assert(offsetof(PF_Point3DDef, reserved) == 48 && sizeof(PF_Point3DDef::reserved) == 16);
static_assert(sizeof(PF_ButtonDef) == 16 && alignof(PF_ButtonDef) == 8);
static_assert(offsetof(PF_ButtonDef, value) == 0 && sizeof(PF_ButtonDef::value) == 4);
static_assert(offsetof(PF_ButtonDef, u) == 8 && sizeof(PF_ButtonDef::u) == 8);
static_assert(offsetof(PF_ButtonDef, u.namesptr) == 8 && sizeof(static_cast<PF_ButtonDef*>(nullptr)->u.namesptr) == 8);
static_assert(sizeof(PF_PathDef) == 12 && alignof(PF_PathDef) == 4);
static_assert(offsetof(PF_PathDef, path_id) == 0 && sizeof(PF_PathDef::path_id) == 4);
static_assert(offsetof(PF_PathDef, reserved0) == 4 && sizeof(PF_PathDef::reserved0) == 4);
static_assert(offsetof(PF_PathDef, dephault) == 8 && sizeof(PF_PathDef::dephault) == 4);
static_assert(sizeof(PF_ArbitraryDef) == 32 && alignof(PF_ArbitraryDef) == 8);
static_assert(offsetof(PF_ArbitraryDef, id) == 0 && sizeof(PF_ArbitraryDef::id) == 2);
static_assert(offsetof(PF_ArbitraryDef, pad) == 2 && sizeof(PF_ArbitraryDef::pad) == 2);
static_assert(offsetof(PF_ArbitraryDef, dephault) == 8 && sizeof(PF_ArbitraryDef::dephault) == 8);
static_assert(offsetof(PF_ArbitraryDef, value) == 16 && sizeof(PF_ArbitraryDef::value) == 8);
static_assert(offsetof(PF_ArbitraryDef, refconPV) == 24 && sizeof(PF_ArbitraryDef::refconPV) == 8);
static_assert(sizeof(PF_ParamDefUnion) == 120 && alignof(PF_ParamDefUnion) == 8);
static_assert(offsetof(PF_ParamDefUnion, ld) == 0 && sizeof(PF_ParamDefUnion::ld) == 120);
static_assert(offsetof(PF_ParamDefUnion, sd) == 0 && sizeof(PF_ParamDefUnion::sd) == 88);
static_assert(offsetof(PF_ParamDefUnion, fd) == 0 && sizeof(PF_ParamDefUnion::fd) == 92);
static_assert(offsetof(PF_ParamDefUnion, ad) == 0 && sizeof(PF_ParamDefUnion::ad) == 16);
static_assert(offsetof(PF_ParamDefUnion, bd) == 0 && sizeof(PF_ParamDefUnion::bd) == 16);
static_assert(offsetof(PF_ParamDefUnion, cd) == 0 && sizeof(PF_ParamDefUnion::cd) == 8);
static_assert(offsetof(PF_ParamDefUnion, td) == 0 && sizeof(PF_ParamDefUnion::td) == 20);
static_assert(offsetof(PF_ParamDefUnion, pd) == 0 && sizeof(PF_ParamDefUnion::pd) == 16);
static_assert(offsetof(PF_ParamDefUnion, fs_d) == 0 && sizeof(PF_ParamDefUnion::fs_d) == 88);
static_assert(offsetof(PF_ParamDefUnion, arb_d) == 0 && sizeof(PF_ParamDefUnion::arb_d) == 32);
static_assert(offsetof(PF_ParamDefUnion, path_d) == 0 && sizeof(PF_ParamDefUnion::path_d) == 12);
static_assert(offsetof(PF_ParamDefUnion, button_d) == 0 && sizeof(PF_ParamDefUnion::button_d) == 16);
static_assert(offsetof(PF_ParamDefUnion, point3d_d) == 0 && sizeof(PF_ParamDefUnion::point3d_d) == 64);
static_assert(sizeof(PF_ParamDef) == 176 && alignof(PF_ParamDef) == 8);
static_assert(offsetof(PF_ParamDef, uu) == 0 && sizeof(PF_ParamDef::uu) == 4);
static_assert(offsetof(PF_ParamDef, uu.id) == 0 && sizeof(static_cast<PF_ParamDef*>(nullptr)->uu.id) == 4);
static_assert(offsetof(PF_ParamDef, uu.change_flags) == 0 &&
              sizeof(static_cast<PF_ParamDef*>(nullptr)->uu.change_flags) == 4);
static_assert(offsetof(PF_ParamDef, ui_flags) == 4 && sizeof(PF_ParamDef::ui_flags) == 4);
static_assert(offsetof(PF_ParamDef, ui_width) == 8 && sizeof(PF_ParamDef::ui_width) == 2);
static_assert(offsetof(PF_ParamDef, ui_height) == 10 && sizeof(PF_ParamDef::ui_height) == 2);
static_assert(offsetof(PF_ParamDef, param_type) == 12 && sizeof(PF_ParamDef::param_type) == 4);
static_assert(offsetof(PF_ParamDef, name) == 16 && sizeof(PF_ParamDef::name) == 32);
static_assert(offsetof(PF_ParamDef, flags) == 48 && sizeof(PF_ParamDef::flags) == 4);
static_assert(offsetof(PF_ParamDef, unused) == 52 && sizeof(PF_ParamDef::unused) == 4);
static_assert(offsetof(PF_ParamDef, u) == 56 && sizeof(PF_ParamDef::u) == 120);
static_assert(sizeof(PF_UserChangedParamExtra) == 4 && alignof(PF_UserChangedParamExtra) == 4);
static_assert(offsetof(PF_UserChangedParamExtra, param_index) == 0 &&
              sizeof(PF_UserChangedParamExtra::param_index) == 4);
#endif
