#pragma once

// What assistive technology sees of the items for which Qt's own accessible interface says too little.
//
// The item of a popup, and any with one of these properties, gets an interface of this module instead of Qt's:
//
//   string accessibleText     its value as it is displayed, with the unit: "3 060 tr/min"
//   bool accessibleModal      it is a dialog: nothing beside it can be used; popups need not say so
//   bool accessibleCovered    it can be covered: while this is true or a question has the focus, its content is left out
//
// A window gets one, with the role of a dialog, if it has these two:
//
//   string accessibleName      its name
//   string accessibleMessage   its description
//
// Everything else (role, name, description, actions) comes from its Accessible properties, as with Qt's.
// The text reaches Orca as the text of a combo box or a stepper. Orca reads a slider's value as a bare
// number, unless Qt (from 6.8 on) passes the text on as an attribute. VoiceOver reads the value of all three
// as a text.
//
// Call the functions on the main thread.

namespace Fenwhirl {

// Makes Qt ask this module for the interfaces of such items. Call it before the first window; a second call changes
// nothing.
void installAccessibleNodes();

// Whether the text of a slider can be heard. If not, its unit belongs into its description.
[[nodiscard]] bool isSliderTextHeard();

} // namespace Fenwhirl
