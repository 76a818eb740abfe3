// The language of what Qt itself says: file panels, the menus of text fields.
#pragma once

namespace tessaly {

/// Makes Qt speak the interface's language, as far as its translations are installed; English otherwise.
/// User-interface thread only.
void applyQtLanguage();

}  // namespace tessaly
