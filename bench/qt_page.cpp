// The guide's page with Qt Quick 6.
//
//   qt-page QML_FILE HELP_IMAGE ARROW_IMAGE TEXT

#include <QtGui/QGuiApplication>
#include <QtQml/QQmlContext>
#include <QtQuick/QQuickView>

int main(int argc, char** argv)
{
    if (argc != 5)
        return 2;
    const QGuiApplication application(argc, argv);
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QQuickView view;
    QQmlContext* page = view.rootContext();
    page->setContextProperty("helpImage", QUrl::fromLocalFile(argv[2]));
    page->setContextProperty("arrowImage", QUrl::fromLocalFile(argv[3]));
    page->setContextProperty("helpText", QString::fromUtf8(argv[4]));
    view.setResizeMode(QQuickView::SizeRootObjectToView);
    view.setSource(QUrl::fromLocalFile(argv[1]));
    view.resize(360, 360);
    view.show();
    return QGuiApplication::exec();
}
