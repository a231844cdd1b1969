// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/log/log_Form.h"

#include "core/Context.h"
#include "core/Value.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QStyle>
#include <QTableWidget>
#include <QVBoxLayout>

namespace tsr::ui {

namespace {

struct Column {
    const char* field;
    int head; // string number of the column head
    int tip;  // string number of its tool tip; 0 for none
};

// Column heads and tool tips, in the tables' column order.
const QList<Column> kCalendarColumns{{"Transfer", 813, 814}, {"Action", 783, 784}, {"SynchDate", 785, 786},
                                     {"Date", 787, 788},     {"Time", 789, 790},   {"Text", 791, 792},
                                     {"Typ", 793, 794},      {"Error", 795, 796},  {"ErrorDesc", 797, 798}};
const QList<Column> kContactColumns{{"Transfer", 813, 814}, {"Action", 783, 784},   {"SynchDate", 785, 786},
                                    {"Date", 787, 788},     {"Name", 799, 0},       {"Phone", 800, 0},
                                    {"Error", 795, 796},    {"ErrorDesc", 797, 798}};
const QList<Column> kErrorColumns{
    {"Date", 804, 805}, {"ErrorNum", 806, 807}, {"ErrorDesc", 797, 798}, {"Modul", 808, 809}, {"Proc", 810, 811}};

const QList<Column>& columnsOf(const QString& grid) {
    if (grid == u"logContact")
        return kContactColumns;
    if (grid == u"GridEXTSRFehler")
        return kErrorColumns;
    return kCalendarColumns;
}

QTableWidget* makeGrid(const char* name) {
    auto* grid = new QTableWidget;
    grid->setObjectName(QString::fromLatin1(name));
    grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid->setAlternatingRowColors(true);
    grid->verticalHeader()->hide();
    grid->verticalHeader()->setDefaultSectionSize(grid->fontMetrics().height() + 8);
    grid->horizontalHeader()->setStretchLastSection(true);
    return grid;
}

QString cellText(const core::Context& ctx, const core::Value& v) {
    if (v.type() == core::FieldType::Date)
        return core::dateText(v.toDate(), ctx.formats.DateFormat, ctx.formats.TimeFormat);
    return v.toText();
}

} // namespace

log_Form::log_Form(core::Context& ctx, QWidget* parent) : QDialog(parent), m_ctx(ctx) {
    setObjectName(QStringLiteral("log_Form"));
    logAuflistung = makeGrid("logAuflistung");
    logContact = makeGrid("logContact");
    GridEXTSRFehler = makeGrid("GridEXTSRFehler");
    closeButton = new QPushButton;
    closeButton->setObjectName(QStringLiteral("closeButton"));
    connect(closeButton, &QPushButton::clicked, this, &QDialog::accept);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(logAuflistung, 1);
    layout->addWidget(logContact, 1);
    layout->addWidget(GridEXTSRFehler, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(closeButton);
    layout->addLayout(buttons);
    LogInitlogForm();
}

void log_Form::LogInitlogForm() {
    const core::ResStrings& t = m_ctx.strings;
    setWindowTitle(t.text(780));
    setWindowIcon(style()->standardIcon(QStyle::SP_FileDialogDetailedView));
    closeButton->setText(t.text(781));
    fill(logAuflistung, m_ctx.tables.LogCalendar.get());
    fill(logContact, m_ctx.tables.LogContacts.get());
    fill(GridEXTSRFehler, m_ctx.tables.LogErrors.get());
    arrangeGrids();
}

void log_Form::fill(QTableWidget* grid, tables::Recordset* table) {
    const QList<Column>& columns = columnsOf(grid->objectName());
    grid->clear();
    grid->setColumnCount(int(columns.size()));
    for (int c = 0; c < columns.size(); ++c) {
        auto* head = new QTableWidgetItem(m_ctx.strings.text(columns[c].head));
        if (columns[c].tip)
            head->setToolTip(m_ctx.strings.text(columns[c].tip));
        grid->setHorizontalHeaderItem(c, head);
    }
    const int rows = table ? table->recordCount() : 0;
    grid->setRowCount(rows);
    if (rows > 0) {
        // The log's writers and printers share the tables: leave the cursor where it stood.
        const int position = table->absolutePosition();
        int r = 0;
        for (table->moveFirst(); !table->eof() && r < rows; table->moveNext(), ++r)
            for (int c = 0; c < columns.size(); ++c)
                grid->setItem(
                    r, c, new QTableWidgetItem(cellText(m_ctx, table->value(QString::fromLatin1(columns[c].field)))));
        table->setAbsolutePosition(position);
    }
    grid->resizeColumnsToContents();
}

void log_Form::arrangeGrids() {
    // Grids with rows share the height; with no rows anywhere all three stay, empty.
    const QList<QTableWidget*> grids{logAuflistung, logContact, GridEXTSRFehler};
    bool any = false;
    for (QTableWidget* g : grids)
        any = any || g->rowCount() > 0;
    auto* box = static_cast<QVBoxLayout*>(layout());
    for (QTableWidget* g : grids) {
        g->setVisible(!any || g->rowCount() > 0);
        // A grid's share of the height follows its rows, with room for the head.
        box->setStretchFactor(g, qBound(2, g->rowCount() + 2, 30));
    }
}

} // namespace tsr::ui
