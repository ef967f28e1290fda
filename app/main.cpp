#include <QApplication>
#include <QLabel>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QLabel placeholder("Ordix");
    placeholder.setWindowTitle("Ordix");
    placeholder.show();
    return app.exec();
}
