#include "FinderResults.h"

#include "L10n.h"
#include "QtText.h"

#include <QHeaderView>
#include <QTableWidget>

namespace kestrin::FinderResults {

namespace {

// A column a row leaves blank: a refused table has neither ranges nor a count.
const QString nothing = QStringLiteral("—");

QTableWidgetItem* cell(const QString& text) {
    auto* item = new QTableWidgetItem(text);
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    return item;
}

// The units scan and the sweep both say when an answer came after its time-out.
QTableWidgetItem* lateCell(bool late) {
    QTableWidgetItem* item = cell(late ? QStringLiteral("✓") : QString());
    item->setToolTip(late ? qt(L10n::texts().finder.lateHelp()) : QString());
    return item;
}

void choose(QTableWidget& table, int unit) {
    for (int row = 0; row < table.rowCount(); ++row) {
        if (table.item(row, 0)->data(Qt::UserRole) == unit) {
            table.selectRow(row);
            return;
        }
    }
}

void setColumns(QTableWidget& table, const QStringList& titles) {
    table.clear();
    table.setColumnCount(static_cast<int>(titles.size()));
    table.setHorizontalHeaderLabels(titles);
    table.setRowCount(0);
}

void addRow(QTableWidget& table, const QList<QTableWidgetItem*>& items) {
    const int row = table.rowCount();
    table.insertRow(row);
    for (int column = 0; column < items.size(); ++column) {
        table.setItem(row, column, items[column]);
    }
}

void fillUnits(QTableWidget& table, const std::vector<UnitScan::Answer>& answers) {
    const auto& texts = L10n::texts();
    setColumns(table,
               {qt(texts.table.unitID()), qt(texts.finder.answer()), qt(texts.finder.late())});
    table.horizontalHeaderItem(2)->setToolTip(qt(texts.finder.lateHelp()));
    for (const UnitScan::Answer& answer : answers) {
        QTableWidgetItem* unit = cell(QString::number(answer.unit));
        unit->setData(Qt::UserRole, answer.unit);
        addRow(table, {unit, cell(answerText(answer)), lateCell(answer.late)});
    }
}

void fillSettings(QTableWidget& table, const std::optional<SettingsSweep::Found>& found) {
    const auto& texts = L10n::texts();
    setColumns(table,
               {qt(texts.header.baudRate()), qt(texts.settings.frame()), qt(texts.table.unitID()),
                qt(texts.finder.answer()), qt(texts.finder.late())});
    table.horizontalHeaderItem(4)->setToolTip(qt(texts.finder.lateHelp()));
    if (found) {
        addRow(table, {cell(QString::number(found->serial.baudRate)),
                       cell(qt(found->serial.frameDescription())),
                       cell(QString::number(found->answer.unit)), cell(answerText(found->answer)),
                       lateCell(found->answer.late)});
    }
}

// Addresses the device was too busy to read are neither found nor missing: counted apart as
// "96 + 32 ?", with a sentence naming their ranges in the tool tip.
QTableWidgetItem* countCell(const TableMap& mapped) {
    const int unknown = mapped.unknownCount();
    if (unknown == 0) {
        return cell(QString::number(mapped.addressCount()));
    }
    QTableWidgetItem* item =
        cell(QStringLiteral("%1 + %2 ?").arg(mapped.addressCount()).arg(unknown));
    item->setToolTip(qt(L10n::texts().finder.busyRanges(rangesText(mapped.unknown, "–"))));
    return item;
}

void fillMap(QTableWidget& table, const std::optional<RegisterMap>& map) {
    const auto& texts = L10n::texts();
    setColumns(table,
               {qt(texts.table.table()), qt(texts.finder.addresses()), qt(texts.finder.count())});
    if (!map) {
        return;
    }
    for (const TableMap& mapped : map->tables) {
        const QString tableName = qt(L10n::Table::tableName(mapped.table));
        if (!mapped.supported) {
            addRow(table,
                   {cell(tableName), cell(qt(L10n::Modbus::exceptionName(0x01))), cell(nothing)});
            continue;
        }
        const std::string ranges = rangesText(mapped.ranges, "–");
        addRow(table,
               {cell(tableName), cell(ranges.empty() ? nothing : qt(ranges)), countCell(mapped)});
    }
}

QString mapSummary(const RegisterMap& map) {
    const auto& scan = L10n::texts().scan;
    if (!map.answered) {
        return qt(scan.noUnitAnswered());
    }
    if (map.fellSilent) {
        return qt(L10n::texts().finder.mapIncomplete());
    }
    if (const int count = DeviceFinder::datapointCount(map); count > DeviceFinder::mostToAdd) {
        return qt(L10n::texts().finder.tooManyToAdd(count, DeviceFinder::mostToAdd));
    }
    if (map.busy()) {
        return qt(L10n::texts().finder.busyUnknown(map.unknownCount()));
    }
    return map.found() ? QString() : qt(scan.noAddressFound());
}

} // namespace

QString answerText(const UnitScan::Answer& answer) {
    const QString table = qt(L10n::Table::tableName(answer.table));
    const QString outcome =
        answer.exception
            ? qt(L10n::Modbus::exceptionName(*answer.exception))
            : QStringLiteral("FC") + qt(L10n::hexByte(answer.table.readFunction().code()));
    return table + QStringLiteral(" · ") + outcome;
}

void fill(QTableWidget& table, const DeviceFinder::Findings& findings) {
    const std::optional<int> chosen = chosenUnit(table);
    switch (findings.scan) {
    case DeviceFinder::Scan::units:
        fillUnits(table, findings.units);
        break;
    case DeviceFinder::Scan::settings:
        fillSettings(table, findings.settings);
        break;
    case DeviceFinder::Scan::registers:
        fillMap(table, findings.map);
        break;
    }
    // The answer or the address ranges take the spare width; the short columns keep theirs.
    const int wide = findings.scan == DeviceFinder::Scan::settings ? 3 : 1;
    QHeaderView& header = *table.horizontalHeader();
    header.setStretchLastSection(false);
    header.setSectionResizeMode(QHeaderView::ResizeToContents);
    header.setSectionResizeMode(wide, QHeaderView::Stretch);
    if (chosen) {
        choose(table, *chosen);
    }
}

std::optional<int> chosenUnit(const QTableWidget& table) {
    const QList<QTableWidgetItem*> selected = table.selectedItems();
    if (selected.isEmpty()) {
        return std::nullopt;
    }
    // Only the units' rows carry a unit.
    const QVariant unit = table.item(selected.front()->row(), 0)->data(Qt::UserRole);
    return unit.isValid() ? std::optional(unit.toInt()) : std::nullopt;
}

QString summary(const DeviceFinder::Findings& findings) {
    const auto& texts = L10n::texts();
    if (findings.error) {
        return qt(L10n::Errors::describe(*findings.error));
    }
    if (findings.cancelled) {
        return qt(texts.finder.cancelled());
    }
    switch (findings.scan) {
    case DeviceFinder::Scan::units:
        return findings.units.empty() ? qt(texts.scan.noUnitAnswered()) : QString();
    case DeviceFinder::Scan::settings:
        return findings.settings ? QString() : qt(texts.scan.noSettingsAnswered());
    case DeviceFinder::Scan::registers:
        return findings.map ? mapSummary(*findings.map) : QString();
    }
    return {};
}

} // namespace kestrin::FinderResults
