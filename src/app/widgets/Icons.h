// The application's own icons: drawings that are sharp at every scale.
#pragma once

#include <QIcon>

namespace tessaly {

/// A drawing in the colour of the texts around it; it follows the palette by itself. `name` is one of the files of
/// icons/ without its extension.
[[nodiscard]] QIcon tintedIcon(const char* name);

/// The same in the colour of texts on the grey behind the preview.
[[nodiscard]] QIcon previewIcon(const char* name);

/// A drawing in its own colours.
[[nodiscard]] QIcon colouredIcon(const char* name);

}  // namespace tessaly
