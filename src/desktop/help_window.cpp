#include "desktop/help_window.h"

#include <QFile>
#include <QKeyEvent>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace marlune {

HelpWindow::HelpWindow(const QString& file) {
    setWindowTitle(QStringLiteral("Marlune 200Q - Contents"));
    resize(720, 640);
    auto* page = new QTextBrowser(this);
    page->document()->setDocumentMargin(22);
    QFile source(file);
    if (file.isEmpty())
        page->setPlainText(QStringLiteral("The help file is not installed."));
    else if (!source.open(QIODevice::ReadOnly))
        page->setPlainText(QStringLiteral("The help file %1 can't be read.").arg(file));
    else if (file.endsWith(QStringLiteral(".html")))
        page->setHtml(QString::fromUtf8(source.readAll()));
    else
        page->setPlainText(QString::fromUtf8(source.readAll()));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(page);
}

void HelpWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QWidget::keyPressEvent(event);
}

} // namespace marlune
