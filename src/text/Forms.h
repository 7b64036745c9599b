#pragma once
// Forms and controls, for Ds_MyVaribleFunction. A form or control is an automation object
// whose members are read by name (Controls, Enabled, Visible, hWnd, Name; Container and
// Parent for frames; Width, Height, Picture, Stretch for images), or a window: a handle or
// a window path. A form's controls are its Controls (an array, or a collection For Each
// walks); a window's controls are all its child windows.
#include "core/runtime/Platform.h"
#include "core/runtime/Variant.h"

#include <cstdint>
#include <string>

namespace vx::forms {

// IsControlObject: an object with Name, Enabled and Visible. Never raises.
bool isControlObject(const VARIANT& value) noexcept;
// GetControlType: the kind of control, as a forms program names it.
std::wstring controlType(const VARIANT& control);

// DragMe: releases the capture and sends the form's window the button message with the
// hit-test code.
void dragMe(const VARIANT& form, LONG buttonMessage, LONG hitTest);
// WinOnTop: the form's window topmost, or not; whether the system did it.
bool winOnTop(const VARIANT& form, bool onTop);

// The enabling members; each returns how many forms or controls it set.
int32_t enableForms(const VARIANT& forms, bool enabled, const VARIANT& except);
int32_t enableControls(const VARIANT& form, bool enabled, const VARIANT& except);
int32_t showControls(const VARIANT& form, bool visible, const VARIANT& except);
int32_t enableFrame(const VARIANT& frame, bool enabled);

// GoImageSizeAuto: sizes the image control to its picture's proportions within the box
// (missing: its present size); picture, when not null, becomes its Picture first.
bool imageSizeAuto(const VARIANT& image, const VARIANT& maxWidth, const VARIANT& maxHeight, IDispatch* picture);

}  // namespace vx::forms
