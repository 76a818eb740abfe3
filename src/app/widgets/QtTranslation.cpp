#include "app/widgets/QtTranslation.h"

#include "localization/Localization.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

namespace tessaly {
void applyQtLanguage() {
  delete QCoreApplication::instance()->findChild<QTranslator*>();  // removes itself
  const QString name = QString::fromLatin1(spoken(Localization::language()).toolkitCatalogue);
  auto* translator = new QTranslator(QCoreApplication::instance());
  if (!name.isEmpty() && translator->load(name, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
    QCoreApplication::installTranslator(translator);
}

}  // namespace tessaly
