// Where windows stood and what they showed, the recent files and the folder of the last one, kept in a file
// from one run to the next.
//
// User-interface thread only.
#pragma once

#include <QString>
#include <QStringList>
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

    static constexpr int kRecentFiles = 8;
    [[nodiscard]] QStringList recentFiles() const;        // the latest first, whole paths
    void noteRecentFile(const QString& path, bool there); // not there: off the list
    [[nodiscard]] QString lastFolder() const;             // of a file dialog; empty where none was used
    void noteFolder(const QString& folder);

  private:
    std::unique_ptr<QSettings> settings_;
};

} // namespace marlune
