#include "Fenwhirl/Application/ViewEngine.h"

#include "Fenwhirl/Application/ApplicationIconProvider.h"
#include "Fenwhirl/Platform/Desktop/Announcement.h"
#include "Fenwhirl/Platform/Desktop/SystemSymbol.h"
#include "Fenwhirl/Views/Components/Announcer.h"
#include "Fenwhirl/Views/Components/SystemSymbols.h"
#include "Fenwhirl/Views/Views.h"

#include <QCoreApplication>
#include <QEvent>

namespace Fenwhirl {

void setTranslationThreshold() {
    const char* const name = "QV4_JIT_CALL_THRESHOLD";
    if (!qEnvironmentVariableIsSet(name)) {
        qputenv(name, "100");
    }
}

std::unique_ptr<QQmlEngine> makeViewEngine() {
    registerViews();
    setSystemSymbolSource(systemSymbol);
    setSystemAnnouncement(announceBySystem);
    auto engine = std::make_unique<QQmlEngine>();
    engine->addImportPath(QStringLiteral("qrc:/qt/qml"));
    engine->addImageProvider(ApplicationIconProvider::name(),
                             new ApplicationIconProvider); // the engine owns it
    return engine;
}

PreparedViews prepareMainWindow() {
    PreparedViews views;
    views.engine = makeViewEngine();
    for (const QUrl& file : {mainWindowFile(), firstPageFile()}) {
        views.loading.push_back(
            std::make_unique<QQmlComponent>(views.engine.get(), file, QQmlComponent::Asynchronous));
    }
    return views;
}

void continueLoading() {
    // Qt's engine posts its requests with this type. Events of other types wait: their receivers may not be ready yet.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::User);
}

} // namespace Fenwhirl
