// SPDX-License-Identifier: GPL-3.0-or-later
// The in-memory table with a cursor: named, typed fields (names compare without
// regard to case), rows added, changed and deleted at the cursor, a forward
// Find on simple criteria, sort and filter. The program keeps all its entries
// in tables of this kind; none of them is ever stored on disk.
#pragma once

#include "core/Value.h"

#include <QHash>
#include <QString>
#include <QStringList>
#include <array>
#include <functional>
#include <memory>
#include <span>
#include <vector>

namespace tsr::tables {

using core::FieldType;
using core::Value;

class Recordset {
public:
    // AbsolutePosition outside the rows, with the recordset's own numbers.
    static constexpr int PosUnknown = -1;
    static constexpr int PosBOF = -2;
    static constexpr int PosEOF = -3;

    explicit Recordset(QString name = {});
    ~Recordset();
    Recordset(const Recordset&) = delete;
    Recordset& operator=(const Recordset&) = delete;

    const QString& name() const { return m_name; }

    // Layout: fields are appended before Open.
    void appendField(const QString& name, FieldType type);
    void open();
    void close();
    bool isOpen() const { return m_open; }

    int fieldCount() const { return int(m_fields.size()); }
    const QString& fieldName(int index) const { return m_fields.at(size_t(index)).name; }
    FieldType fieldType(int index) const { return m_fields.at(size_t(index)).type; }
    // -1 when the table has no such field.
    int fieldIndex(const QString& name) const;
    bool hasField(const QString& name) const { return fieldIndex(name) >= 0; }

    // Rows. AddNew appends an empty row and makes it current; Update and UpdateBatch
    // commit (values are kept as they are written, so both only end an edit).
    void addNew();
    // AddNew with the values of all fields in field order, each converted to its field's type.
    void addNew(std::vector<Value> values);
    void update() {}
    void updateBatch() {}
    // Deletes the current row. The cursor stays on the gap: MoveNext goes on to the
    // row behind it, reading a field raises the no-current-record error.
    void deleteCurrent();

    // Find(criteria, skip, direction): searches from the current row (plus skip)
    // forward (direction 1) or backward (-1). A hit makes that row current and
    // returns true; a miss leaves the table at EOF (or BOF backwards) and returns false.
    // Criteria: "Field = value", "Field = 'value'", "Field = #date#", and "<>", "<",
    // ">", "<=", ">=", "LIKE 'a*'". Unquoted values compare as text with the field's
    // text form. A criteria text it cannot read raises an error.
    bool find(const QString& criteria, int skip = 0, int direction = 1);

    void moveFirst();
    void moveLast();
    void moveNext();
    void movePrevious();
    bool eof() const;
    bool bof() const;
    int recordCount() const;
    // 1-based position of the current row in the view, or PosBOF/PosEOF/PosUnknown.
    int absolutePosition() const;
    void setAbsolutePosition(int position);

    // Fields of the current row; an unknown name raises the item-not-found error.
    Value value(const QString& field) const;
    Value value(int index) const;
    void setValue(const QString& field, const Value& v);
    void setValue(int index, Value v);

    // The current row's values in field order: to read without copies and, while
    // writableInPlace(), to write a value of the field's own type without going
    // through setValue. A Find index must see every change, so while one is kept
    // every write goes through setValue.
    std::span<Value> currentValues();
    bool writableInPlace() const { return m_indexes.isEmpty(); }

    // GetRows(1): the current row's values in field order; the cursor moves one row on.
    std::vector<Value> getRows();

    // Sort: "Field [ASC|DESC], Field ..."; empty for table order.
    void setSort(const QString& sort);
    QString sort() const { return m_sort; }
    // Filter: a criteria text as for Find, several joined with AND; empty for none.
    void setFilter(const QString& criteria);
    QString filter() const { return m_filter; }

    // How a date value reads as text: in comparisons of date fields and when a date
    // is written into a text field.
    void setDateTextForm(const QString& dateMask, const QString& timeMask);
    QString dateAsText(core::VbDate d) const;
    const QString& dateMask() const { return m_dateMask; }
    const QString& timeMask() const { return m_timeMask; }

    // Rows of the current view, by 0-based view index, without moving the cursor.
    Value valueAt(int viewIndex, int fieldIndex) const;

    // A row's identity that survives sorting and filtering (a grid keeps its current
    // row by it): the row at a view index, and where that row stands now (-1 when
    // it was deleted or is filtered out).
    using Bookmark = const void*;
    Bookmark bookmarkAt(int viewIndex) const;
    int viewIndexOf(Bookmark bookmark) const;

private:
    struct Row;
    struct Criterion;
    struct Index;

    int requireField(const QString& name) const;
    void convertForField(int index, Value& v) const;
    Row& currentRow();
    const Row& currentRow() const;
    Criterion parseCriterion(const QString& text) const;
    bool matches(const Row& row, const Criterion& c) const;
    QString textForm(const Value& v) const;
    void rebuildView();
    Index& indexFor(int field);
    void dropIndexes();
    int findIndexed(const Criterion& c, int from);

    QString m_name;
    struct Field {
        QString name;
        QString folded;
        FieldType type;
    };
    std::vector<Field> m_fields;
    QHash<QString, int> m_fieldByName;             // case-folded name -> index
    mutable QHash<QString, int> m_fieldBySpelling; // name as asked for -> index
    // Names written as literals, by the address of their text, checked against a copy.
    struct LiteralSlot {
        const QChar* text = nullptr;
        QString copy;
        int index = -1;
    };
    mutable std::array<LiteralSlot, 128> m_literalSlots;
    bool m_open = false;

    std::vector<std::unique_ptr<Row>> m_rows; // table order
    std::vector<Row*> m_view;                 // sorted and filtered order
    int m_cursor = 0;                         // index into m_view; == size() at EOF, -1 at BOF
    bool m_onDeleted = false;

    QString m_sort;
    QString m_filter;
    std::vector<Criterion> m_filterCriteria;

    QString m_dateMask = QStringLiteral("dd.mm.yyyy");
    QString m_timeMask = QStringLiteral("hh:mm:ss");

    QHash<int, std::shared_ptr<Index>> m_indexes;
};

} // namespace tsr::tables
