#include "desktop/window_memory.h"

#include <QSettings>

#include "desktop/score_window.h"

namespace marlune {

WindowMemory::WindowMemory() : settings_(std::make_unique<QSettings>(QString(), QSettings::IniFormat)) {}

WindowMemory::~WindowMemory() = default;

void WindowMemory::setFile(const QString& path) {
    settings_ = std::make_unique<QSettings>(path, QSettings::IniFormat);
}

void WindowMemory::remember(const ScoreWindow& window) {
    window.remember(*settings_);
}

void WindowMemory::recall(ScoreWindow& window) {
    window.recall(*settings_);
}

QStringList WindowMemory::recentFiles() const {
    return settings_->value(QStringLiteral("recent/files")).toStringList().mid(0, kRecentFiles);
}

void WindowMemory::noteRecentFile(const QString& path, bool there) {
    QStringList files = recentFiles();
    files.removeAll(path);
    if (there) files.prepend(path);
    settings_->setValue(QStringLiteral("recent/files"), files.mid(0, kRecentFiles));
}

QString WindowMemory::lastFolder() const {
    return settings_->value(QStringLiteral("recent/folder")).toString();
}

void WindowMemory::noteFolder(const QString& folder) {
    settings_->setValue(QStringLiteral("recent/folder"), folder);
}

bool WindowMemory::wasOpen(const char* window) const {
    return settings_->value(QString::fromLatin1(window) + "/open").toBool();
}

} // namespace marlune
