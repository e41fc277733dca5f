// Where windows stood and what they showed, kept in a file from one run to the next.
//
// User-interface thread only.
#pragma once

#include <QString>
#include <memory>

class QSettings;

namespace marlune {

class ScoreWindow;

class WindowMemory {
  public:
    WindowMemory();
    ~WindowMemory();
    WindowMemory(const WindowMemory&) = delete;
    WindowMemory& operator=(const WindowMemory&) = delete;

    void setFile(const QString& path); // without one nothing outlives the program
    void remember(const ScoreWindow& window);
    void recall(ScoreWindow& window);
    [[nodiscard]] bool wasOpen(const char* window) const;

  private:
    std::unique_ptr<QSettings> settings_;
};

} // namespace marlune
