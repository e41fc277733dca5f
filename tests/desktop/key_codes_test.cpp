#include <gtest/gtest.h>

#include <QKeyEvent>
#include <vector>

#include "desktop/key_codes.h"

namespace marlune {
namespace {

struct Stroke {
    int qtKey, scanCode, code;
    bool keypad = false;
};

TEST(PanelKeys, StayUnderTheSameFingersOnEveryLayout) {
    const std::vector<Stroke> us = {
        {Qt::Key_1, 10, 49},           {Qt::Key_Exclam, 10, 49},        {Qt::Key_Q, 24, 81},
        {Qt::Key_Equal, 21, 187},      {Qt::Key_Minus, 20, 189},        {Qt::Key_BracketLeft, 34, 219},
        {Qt::Key_Semicolon, 47, 186},  {Qt::Key_BracketRight, 35, 221}, {Qt::Key_Apostrophe, 48, 222},
        {Qt::Key_Comma, 59, 188},      {Qt::Key_Period, 60, 190},       {Qt::Key_Slash, 61, 0},
        {Qt::Key_Plus, 86, 107, true}, {Qt::Key_Minus, 82, 109, true},  {Qt::Key_1, 87, 0, true}};
    const std::vector<Stroke> german = {{Qt::Key_ssharp, 20, 189},     {Qt::Key_Dead_Acute, 21, 187},
                                        {Qt::Key_Udiaeresis, 34, 219}, {Qt::Key_Plus, 35, 221},
                                        {Qt::Key_Odiaeresis, 47, 186}, {Qt::Key_Adiaeresis, 48, 222},
                                        {Qt::Key_Z, 29, 90},           {Qt::Key_Y, 52, 89},
                                        {Qt::Key_Comma, 59, 188},      {Qt::Key_Minus, 61, 189}};
    const std::vector<Stroke> french = {
        {Qt::Key_Ampersand, 10, 49},   {Qt::Key_Underscore, 17, 56}, {Qt::Key_A, 24, 65},
        {Qt::Key_Q, 38, 81},           {Qt::Key_M, 47, 77},          {Qt::Key_Dead_Circumflex, 34, 219},
        {Qt::Key_ParenRight, 20, 189}, {Qt::Key_Dollar, 35, 221},    {Qt::Key_Ugrave, 48, 222},
        {Qt::Key_Semicolon, 59, 186},  {Qt::Key_Comma, 58, 188},     {Qt::Key_Colon, 60, 190}};
    const std::vector<Stroke> any = {
        {Qt::Key_Space, 65, 32},   {Qt::Key_Return, 36, 13},    {Qt::Key_Enter, 104, 13, true},
        {Qt::Key_PageUp, 112, 33}, {Qt::Key_PageDown, 117, 34}, {Qt::Key_Home, 110, 36},
        {Qt::Key_Insert, 118, 45}, {Qt::Key_Left, 113, 37},     {Qt::Key_Right, 114, 39},
        {Qt::Key_Shift, 50, 16},   {Qt::Key_Control, 37, 17},   {Qt::Key_Escape, 9, 27}};
    const std::vector<Stroke> placeUnknown = {{Qt::Key_1, 0, 49},
                                              {Qt::Key_BracketLeft, 0, 219},
                                              {Qt::Key_Period, 0, 190},
                                              {Qt::Key_F5, 0, 116},
                                              {Qt::Key_F8, 0, 0}};
    for (const auto& layout : {us, german, french, any, placeUnknown})
        for (const Stroke& s : layout)
            EXPECT_EQ(virtualKey({s.qtKey, static_cast<std::uint32_t>(s.scanCode), s.keypad}), s.code)
                << s.qtKey << " at " << s.scanCode << " of the layout that begins with " << layout[0].qtKey;
}

} // namespace
} // namespace marlune
