// A text that cannot be edited and that follows the interface's language.
//
// It holds either an English text (the key of its translations), a name that is never translated, or a composed text
// that is made anew at every change of the language. Nothing it shows is read as HTML or as a mnemonic, nor obeyed
// (see platform/VisibleText.h).
#pragma once

#include "app/widgets/FollowsLanguage.h"
#include "app/widgets/TextFit.h"

#include <QLabel>
#include <functional>
#include <string>
#include <string_view>

namespace tessaly {

/// Makes a text in the interface's language, whenever it is asked.
using TextSource = std::function<std::string()>;

class LocalizedLabel : public QLabel, public FollowsLanguage {
  Q_OBJECT

 public:
  explicit LocalizedLabel(std::string sourceText = {}, QWidget* parent = nullptr);

  /// Shows the translation of an English text.
  void setStringValue(std::string sourceText);

  /// Shows a name or a path, made visible; `detail`, when given, is its tool tip in any case.
  void setName(std::string_view name, std::string_view detail = {});

  /// Shows what `text` returns, now and after each change of the language. Its line feeds break lines: names in it are
  /// made visible by whoever puts them there.
  void setComposed(TextSource text);

  /// The whole shown text, also where the label has no room for it.
  [[nodiscard]] std::string stringValue() const;
  [[nodiscard]] const std::string& sourceText() const { return sourceText_; }

  void refreshLanguage() override;

  /// Keeps the label `lines` high whatever it says; what does not fit is elided and stands in the tool tip.
  void setLines(int lines, Elision elision);

  /// Breaks words that are wider than this; the label wraps at its words already.
  void setWidestWord(int width);

  /// Whether the label says by itself, in its tool tip, what it has no room for.
  [[nodiscard]] bool keepsToolTip() const { return lines_ > 0; }

  /// A font relative to the application's.
  void setRelativeFont(double size, bool bold);

  /// The application's font has changed: Qt tells windows only.
  void followFont();

  /// Tells a screen reader about the text.
  void announce();

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 public slots:  // found by their names
  /// Puts what is selected on the clipboard; all of an elided text means the text, not what was left of it.
  void copy();
  void selectAll();

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void showText();
  [[nodiscard]] int heightOfLines() const;

  void show(TextSource text, const std::string& detail);

  std::string sourceText_;
  TextSource text_;
  QString full_;
  QString detail_;
  int lines_ = 0;  ///< 0: as many as the text needs
  Elision elision_ = Elision::end;
  int widestWord_ = 0;  ///< 0: words are not broken
  double relativeSize_ = 1;
  bool bold_ = false;
};

/// The look of a section's title.
void makeHeading(LocalizedLabel& label, double size = 1.0);

/// The look of an explanation: smaller, in the secondary colour, wrapped.
void makeNote(LocalizedLabel& label);

}  // namespace tessaly
