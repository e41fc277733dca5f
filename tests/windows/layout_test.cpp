// The checked-in layout table is that of the drawing.
#include <gtest/gtest.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <array>

#include "score/map_layout.h"
#include "score/sheet_layout.h"

namespace marlune {
namespace {

using Row = std::array<double, 15>;

Row drawn(const QJsonObject& c) {
    const QJsonArray hit = c["hit"].toArray();
    return {c["x"].toDouble(),        c["y"].toDouble(),        c["width"].toDouble(),
            c["height"].toDouble(),   c["columns"].toDouble(1), c["rows"].toDouble(1),
            c["pitchX"].toDouble(),   c["pitchY"].toDouble(),   c["groupEvery"].toDouble(),
            c["groupGap"].toDouble(), hit[0].toDouble(),        hit[1].toDouble(),
            hit[2].toDouble(),        hit[3].toDouble(),        c.contains("perModule") ? 1.0 : 0.0};
}

template <typename Part>
Row tabled(const Placed<Part>& placed) {
    const Grid& g = placed.grid;
    return {g.cell.x,     g.cell.y, g.cell.width, g.cell.height,      1.0 * g.columns,
            1.0 * g.rows, g.pitchX, g.pitchY,     1.0 * g.groupEvery, g.groupGap,
            g.hit.x,      g.hit.y,  g.hit.width,  g.hit.height,       placed.perModule ? 1.0 : 0.0};
}

TEST(SheetLayout, TheTableSaysWhatTheDrawingSays) {
    QFile file(QStringLiteral(MARLUNE_WINDOWS_JSON));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QJsonObject windows = QJsonDocument::fromJson(file.readAll()).object();
    const QJsonObject sheet = windows["sheet"].toObject();
    for (const SheetForm form : {SheetForm::wide, SheetForm::compact}) {
        QJsonArray all;
        if (form == SheetForm::compact) all = windows["sheetCompact"].toObject()["controls"].toArray();
        for (const char* group : {"controls", "module", "bass", "drums"})
            for (const QJsonValue c : sheet[group].toArray())
                if (form == SheetForm::wide) all.append(c);
        const auto table = sheetTable(form);
        ASSERT_EQ(all.size(), static_cast<qsizetype>(table.size()));
        for (std::size_t i = 0; i < table.size(); ++i) {
            const QJsonObject c = all[static_cast<qsizetype>(i)].toObject();
            EXPECT_EQ(tabled(table[i]), drawn(c)) << c["name"].toString().toStdString();
        }
    }
    const QJsonArray map = windows["map"].toObject()["controls"].toArray();
    ASSERT_EQ(map.size(), static_cast<qsizetype>(mapTable().size()));
    for (std::size_t i = 0; i < mapTable().size(); ++i)
        EXPECT_EQ(tabled(mapTable()[i]), drawn(map[static_cast<qsizetype>(i)].toObject())) << i;
}

} // namespace
} // namespace marlune
