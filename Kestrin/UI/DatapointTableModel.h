#pragma once

#include "Icons.h"
#include "PointStatus.h"
#include "Uuid.h"
#include "UuidHash.h"

#include <optional>
#include <string>
#include <vector>

#include <QAbstractTableModel>
#include <QHash>

namespace kestrin {

class Datapoint;
class PollerModel;

// The selected poll's datapoints as table rows. Every edit goes back through the PollerModel,
// whose change signals then refresh the rows; the adapter keeps only the row identities so that
// statuses touch only their own rows and a reset happens only when the rows themselves change.
class DatapointTableModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column {
        name,
        unitID,
        table,
        address,
        dataType,
        wordOrder,
        scale,
        value,
        unit,
        status,
        chart,
        format,
        description,
        columnCount_
    };

    // Colours by meaning; the delegate turns them into the palette's colours.
    enum class Tone { primary, secondary, tertiary, green, orange, red };

    enum Role {
        ToneRole = Qt::UserRole + 1,
        SymbolRole,    // int of Symbol; absent when the cell has no symbol
        InactiveRole,  // the cell does not apply to this datapoint and cannot be edited
        OverlapRole,   // the address cell's datapoint overlaps another or runs past 65535
        WritableRole,  // the value cell offers the write editor
        DatapointRole, // the datapoint's id as canonical text, on every cell
    };

    // What the status column shows for a datapoint.
    struct StatusLook {
        Symbol symbol = Symbol::circleDashed;
        Tone tone = Tone::secondary;
        std::string text;
        friend bool operator==(const StatusLook&, const StatusLook&) = default;
    };
    static StatusLook statusLook(const PointStatus* status, bool polling);
    // The value text, or an em dash, and its colour: muted after a failure, faint without value.
    static Tone valueTone(const PointStatus* status);
    // "Raw registers: 0000 00D7"; empty without registers.
    static std::string rawRegistersHelp(const PointStatus* status);
    // Datapoints that overlap another of the list or run past the last address.
    static std::vector<bool> overlapMarks(const std::vector<Datapoint>& datapoints);
    // Why a typed text cannot go into a column, in the user's language; nothing when it can.
    static std::optional<std::string> refusal(int column, const QString& text);

    explicit DatapointTableModel(PollerModel& model, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& input, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    // The datapoint of a row; null for a row that is gone.
    const Datapoint* datapoint(int row) const;
    std::optional<int> row(const Uuid& datapointID) const;
    const std::vector<Uuid>& rowIDs() const noexcept { return rows_; }

private:
    void pollsChanged();
    void statusChanged(const std::vector<Uuid>& datapointIDs);
    // The value and status cells of these rows.
    void liveCellsChanged(int firstRow, int lastRow);
    void stateChanged();
    std::vector<Uuid> currentRowIDs() const;
    void setRows(std::vector<Uuid> ids);
    void refreshOverlaps();
    QVariant display(const Datapoint& point, int column) const;
    QVariant edit(const Datapoint& point, int column) const;
    QVariant toolTip(const Datapoint& point, int column) const;
    // The chart column's tick: whether the selected poll plots the datapoint.
    QVariant checkState(const Datapoint& point, int column) const;
    QVariant tone(const Datapoint& point, int column) const;
    QVariant symbol(const Datapoint& point, int row, int column) const;
    // Whether the row's address cell marks an overlap.
    bool overlaps(int row, int column) const;
    bool isInactive(const Datapoint& point, int column) const;
    bool apply(Datapoint& point, int column, const QVariant& input) const;

    PollerModel& model_;
    std::vector<Uuid> rows_;
    QHash<Uuid, int> rowOf_;
    std::vector<bool> overlaps_;
};

} // namespace kestrin
