#include "desktop/key_codes.h"

#include <QKeyEvent>
#include <algorithm>
#include <iterator>

namespace marlune {

namespace {

enum class By : std::uint8_t {
    meaning,      // the key's name decides
    placeFirst,   // its place, then its name
    meaningFirst, // its name, then its place
    keypad,
};

struct KeyRow {
    int code;
    int qtKey;
    std::uint32_t scanCode;
    By by;
    bool repeats = false;
};

// Letters are not listed: their codes are those of the capitals, on both sides.
constexpr KeyRow kKeys[] = {
    {13, Qt::Key_Return, 0, By::meaning},
    {13, Qt::Key_Enter, 0, By::meaning},
    {16, Qt::Key_Shift, 0, By::meaning},
    {17, Qt::Key_Control, 0, By::meaning},
    {27, Qt::Key_Escape, 0, By::meaning},
    {32, Qt::Key_Space, 0, By::meaning},
    {33, Qt::Key_PageUp, 0, By::meaning, true},
    {34, Qt::Key_PageDown, 0, By::meaning, true},
    {36, Qt::Key_Home, 0, By::meaning},
    {37, Qt::Key_Left, 0, By::meaning},
    {38, Qt::Key_Up, 0, By::meaning},
    {39, Qt::Key_Right, 0, By::meaning},
    {40, Qt::Key_Down, 0, By::meaning},
    {45, Qt::Key_Insert, 0, By::meaning},
    {116, Qt::Key_F5, 0, By::meaning},
    {117, Qt::Key_F6, 0, By::meaning},
    {118, Qt::Key_F7, 0, By::meaning},
    {107, Qt::Key_Plus, 0, By::keypad, true},
    {109, Qt::Key_Minus, 0, By::keypad, true},
    {49, Qt::Key_1, 10, By::placeFirst},
    {50, Qt::Key_2, 11, By::placeFirst},
    {51, Qt::Key_3, 12, By::placeFirst},
    {52, Qt::Key_4, 13, By::placeFirst},
    {53, Qt::Key_5, 14, By::placeFirst},
    {54, Qt::Key_6, 15, By::placeFirst},
    {55, Qt::Key_7, 16, By::placeFirst},
    {56, Qt::Key_8, 17, By::placeFirst},
    {57, Qt::Key_9, 18, By::placeFirst},
    {48, Qt::Key_0, 19, By::placeFirst},
    {219, Qt::Key_BracketLeft, 34, By::placeFirst, true},
    {221, Qt::Key_BracketRight, 35, By::placeFirst, true},
    {186, Qt::Key_Semicolon, 47, By::placeFirst},
    {222, Qt::Key_Apostrophe, 48, By::placeFirst},
    {187, Qt::Key_Equal, 21, By::meaningFirst, true},
    {189, Qt::Key_Minus, 20, By::meaningFirst, true},
    {188, Qt::Key_Comma, 59, By::meaningFirst},
    {190, Qt::Key_Period, 60, By::meaningFirst},
};

template <typename Test>
int codeOf(Test test) {
    const KeyRow* row = std::find_if(std::begin(kKeys), std::end(kKeys), test);
    return row != std::end(kKeys) ? row->code : 0;
}

} // namespace

int virtualKey(const KeyPress& key) {
    if (key.qtKey >= Qt::Key_A && key.qtKey <= Qt::Key_Z) return key.qtKey;
    const bool named = std::any_of(std::begin(kKeys), std::end(kKeys), [&](const KeyRow& row) {
        return row.qtKey == key.qtKey && row.by == By::meaning;
    });
    if (named) return codeOf([&](const KeyRow& row) { return row.qtKey == key.qtKey; });
    if (key.keypad)
        return codeOf([&](const KeyRow& row) { return row.qtKey == key.qtKey && row.by == By::keypad; });
    const auto at = [&](By by) {
        return [&key, by](const KeyRow& row) {
            return row.by == by && key.scanCode != 0 && row.scanCode == key.scanCode;
        };
    };
    if (const int code = codeOf(at(By::placeFirst))) return code;
    const int meant =
        codeOf([&](const KeyRow& row) { return row.qtKey == key.qtKey && row.by != By::keypad; });
    return meant != 0 ? meant : codeOf(at(By::meaningFirst));
}

bool repeats(int virtualKeyCode) {
    return std::any_of(std::begin(kKeys), std::end(kKeys),
                       [&](const KeyRow& row) { return row.code == virtualKeyCode && row.repeats; });
}

int virtualKey(const QKeyEvent& event) {
    return virtualKey({event.key(), event.nativeScanCode(), event.modifiers().testFlag(Qt::KeypadModifier)});
}

int modifierMask(const QKeyEvent& event) {
    const Qt::KeyboardModifiers held = event.modifiers();
    return (held.testFlag(Qt::ShiftModifier) ? 1 : 0) | (held.testFlag(Qt::ControlModifier) ? 2 : 0) |
           (held.testFlag(Qt::AltModifier) ? 4 : 0);
}

} // namespace marlune
