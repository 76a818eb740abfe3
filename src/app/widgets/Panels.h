// The questions that a tab asks outside its own window: file panels, alerts, and opening a folder.
//
// One seam, so that tests answer in the user's place. User-interface thread only; answers come by callback, never
// before the call has returned, and not at all when the user cancels or the asking window goes away.
#pragma once

#include "app/widgets/LocalizedLabel.h"
#include "presentation/AlertPage.h"

#include <QWidget>
#include <exception>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace tessaly {

/// A file panel. Texts are English keys.
struct FilePanel {
  std::string title;
  std::string purpose;             ///< panels of one purpose open where the last one was used
  std::string filterName;          ///< of a panel for files
  std::vector<std::string> globs;  ///< "*.json"
  std::string proposedName;        ///< of a panel for a new file
};

struct Alert {
  enum class Style { plain, informational, warning, critical };

  Style style = Style::informational;
  TextSource text;                            ///< made anew when the language changes
  std::function<AlertPage()> page;            ///< the text laid out, for an alert with much to say; may be empty
  std::string informativeText;                ///< English, below the text; may be empty
  std::vector<std::string> buttons = {"OK"};  ///< English, in their order
  std::size_t defaultButton = 0;              ///< the one that Return and Escape mean
};

class Panels {
 public:
  using PathHandler = std::function<void(const std::filesystem::path&)>;
  using ButtonHandler = std::function<void(std::size_t button)>;

  virtual ~Panels() = default;

  virtual void chooseFolder(QWidget& window, const FilePanel& panel, PathHandler chosen) = 0;
  virtual void chooseFile(QWidget& window, const FilePanel& panel, PathHandler chosen) = 0;
  virtual void chooseNewFile(QWidget& window, const FilePanel& panel, PathHandler chosen) = 0;

  /// Shows a sheet over the window; when one is there already, after it.
  virtual void showAlert(QWidget& window, Alert alert, ButtonHandler answered = {}) = 0;

  /// Opens a folder in the desktop's file browser; false when that fails.
  virtual bool openFolder(const std::filesystem::path& folder) = 0;
};

/// An alert that says one English sentence.
[[nodiscard]] Alert sentence(Alert::Style style, std::string english);

/// An alert that tells about an exception: informational when something that was typed or selected cannot be used,
/// else critical. `subject`: what the work was about, for an error that does not name it.
[[nodiscard]] Alert failureAlert(std::exception_ptr failure, std::string subject);

/// The panels that the user sees.
class DesktopPanels : public Panels {
 public:
  void chooseFolder(QWidget& window, const FilePanel& panel, PathHandler chosen) override;
  void chooseFile(QWidget& window, const FilePanel& panel, PathHandler chosen) override;
  void chooseNewFile(QWidget& window, const FilePanel& panel, PathHandler chosen) override;
  void showAlert(QWidget& window, Alert alert, ButtonHandler answered = {}) override;
  bool openFolder(const std::filesystem::path& folder) override;
};

}  // namespace tessaly
