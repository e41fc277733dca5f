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

bool WindowMemory::wasOpen(const char* window) const {
    return settings_->value(QString::fromLatin1(window) + "/open").toBool();
}

} // namespace marlune
