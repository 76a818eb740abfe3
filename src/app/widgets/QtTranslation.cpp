#include "app/widgets/QtTranslation.h"

#include "app/widgets/QtText.h"
#include "localization/Localization.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>
#include <string_view>

namespace tessaly {
namespace {

/// What the catalogues leave in English, in the words of our own tables.
class MissingTexts : public QTranslator {
 public:
  using QTranslator::QTranslator;

  [[nodiscard]] bool isEmpty() const override { return false; }

  QString translate(const char* context, const char* source, const char*, int) const override {
    const bool isMissing = std::string_view(context) == "QAbstractFileIconProvider";
    const QString text = isMissing ? localized(source) : QString();
    return text == QLatin1String(source) ? QString() : text;
  }
};

}  // namespace

void applyQtLanguage() {
  QCoreApplication* application = QCoreApplication::instance();
  qDeleteAll(application->findChildren<QTranslator*>(Qt::FindDirectChildrenOnly));  // they remove themselves
  QCoreApplication::installTranslator(new MissingTexts(application));
  const QString name = QString::fromLatin1(spoken(Localization::language()).toolkitCatalogue);
  auto* translator = new QTranslator(application);
  if (!name.isEmpty() && translator->load(name, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
    QCoreApplication::installTranslator(translator);
}

}  // namespace tessaly
