#include "app/widgets/Panels.h"

#include "app/widgets/AlertSheet.h"
#include "app/widgets/Metrics.h"
#include "app/widgets/QtText.h"
#include "app/widgets/WindowState.h"
#include "calibration/review/InvalidInput.h"
#include "localization/Localization.h"
#include "platform/VisibleText.h"
#include "presentation/FailureText.h"

#include <QDesktopServices>
#include <QFileDialog>
#include <QScreen>
#include <QSize>
#include <utility>

namespace tessaly {
namespace {

constexpr QSize panelSize(840, 540);
constexpr double dialogShareOfScreen = 0.9;

QString filterText(const FilePanel& panel) {
  QStringList globs;
  for (const std::string& glob : panel.globs)
    globs << toQt(glob);
  return QStringLiteral("%1 (%2)").arg(localized(panel.filterName), globs.join(QLatin1Char(' ')));
}

QFileDialog* makePanel(QWidget& window, const FilePanel& panel) {
  auto* dialog = new QFileDialog(window.window(), localized(panel.title));
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  // The desktop's own panel would speak the desktop's language.
  if (Localization::language() != resolved(AppLanguage::system)) dialog->setOption(QFileDialog::DontUseNativeDialog);
  const QSize wanted(Metrics::scaled(panelSize.width()), Metrics::scaled(panelSize.height()));
  dialog->resize(wanted.boundedTo(window.screen()->availableSize() * dialogShareOfScreen));
  dialog->setLabelText(QFileDialog::Reject, localized("Cancel"));
  if (const auto folder = WindowState::panelFolder(panel.purpose)) dialog->setDirectory(pathText(*folder));
  if (!panel.filterName.empty()) dialog->setNameFilter(filterText(panel));
  return dialog;
}

void remember(const FilePanel& panel, const std::filesystem::path& chosen, bool isFolder) {
  WindowState::setPanelFolder(panel.purpose, isFolder ? chosen : chosen.parent_path());
}

void open(QFileDialog* dialog, const FilePanel& panel, bool isFolder, Panels::PathHandler chosen) {
  QObject::connect(dialog, &QFileDialog::fileSelected, dialog->parentWidget(),
                   [panel, isFolder, chosen = std::move(chosen)](const QString& file) {
                     const std::filesystem::path path = pathFromQt(file);
                     remember(panel, path, isFolder);
                     chosen(path);
                   });
  dialog->open();
}

std::string description(const std::exception_ptr& failure, const std::string& subject) {
  try {
    std::rethrow_exception(failure);
  } catch (const std::exception& error) {
    return visibleText(failureText(error, subject).description);
  }
}

bool isInvalidInput(const std::exception_ptr& failure) {
  try {
    std::rethrow_exception(failure);
  } catch (const InvalidInput&) {
    return true;
  } catch (...) {
    return false;
  }
}

}  // namespace

Alert sentence(Alert::Style style, std::string english) {
  Alert alert;
  alert.style = style;
  alert.text = [english = std::move(english)] { return L(english); };
  return alert;
}

Alert failureAlert(std::exception_ptr failure, std::string subject) {
  Alert alert;
  alert.style = isInvalidInput(failure) ? Alert::Style::informational : Alert::Style::critical;
  alert.text = [failure = std::move(failure), subject = std::move(subject)] { return description(failure, subject); };
  return alert;
}

void DesktopPanels::chooseFolder(QWidget& window, const FilePanel& panel, PathHandler chosen) {
  QFileDialog* dialog = makePanel(window, panel);
  dialog->setFileMode(QFileDialog::Directory);
  dialog->setOption(QFileDialog::ShowDirsOnly);
  open(dialog, panel, true, std::move(chosen));
}

void DesktopPanels::chooseFile(QWidget& window, const FilePanel& panel, PathHandler chosen) {
  QFileDialog* dialog = makePanel(window, panel);
  dialog->setFileMode(QFileDialog::ExistingFile);
  open(dialog, panel, false, std::move(chosen));
}

void DesktopPanels::chooseNewFile(QWidget& window, const FilePanel& panel, PathHandler chosen) {
  QFileDialog* dialog = makePanel(window, panel);
  dialog->setAcceptMode(QFileDialog::AcceptSave);
  dialog->setDefaultSuffix(QFileInfo(toQt(panel.proposedName)).suffix());
  dialog->selectFile(toQt(panel.proposedName));
  open(dialog, panel, false, std::move(chosen));
}

void DesktopPanels::showAlert(QWidget& window, Alert alert, ButtonHandler answered) {
  AlertSheet::show(*window.window(), std::move(alert), std::move(answered));
}

bool DesktopPanels::openFolder(const std::filesystem::path& folder) {
  return QDesktopServices::openUrl(fileUrl(folder));
}

}  // namespace tessaly
