// Changes the language of a window that is open, in place.
#pragma once

#include <QWidget>

namespace tessaly {

/// The pop-up whose items are names that the user chose.
inline constexpr const char* userProfilesIdentifier = "userProfiles";

/// Shows every text of the view and of everything in it in the interface's language, whatever language it is in now.
/// What the user typed or named is left alone.
void localizeView(QWidget& view);

}  // namespace tessaly
