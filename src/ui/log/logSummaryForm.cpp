// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/log/logSummaryForm.h"

#include "core/Context.h"
#include "log/LogText.h"
#include "ui/log/LogPrinting.h"
#include "ui/log/log_Form.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QMenu>
#include <QPushButton>
#include <QStyle>
#include <QTableWidget>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

namespace tsr::ui {

logSummaryForm::logSummaryForm(core::Context& ctx, LogPrinter& printer, QWidget* parent)
    : QDialog(parent), m_ctx(ctx), m_printer(printer) {
    setObjectName(QStringLiteral("logSummaryForm"));
    const core::ResStrings& t = ctx.strings;

    ActiveBarlog = new QToolBar;
    ActiveBarlog->setObjectName(QStringLiteral("ActiveBarlog"));
    ActiveBarlog->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_popPrint = new QMenu(this);
    m_popPrint->setObjectName(QStringLiteral("popPrint"));
    const std::pair<const char*, QString> tools[] = {{"PrinterEinstellungen", t.text(776)},
                                                     {"Printall", t.text(773)},
                                                     {"Printsummary", t.text(774)},
                                                     {"Printdetails", t.text(775)}};
    const QString tips[] = {t.text(776), t.text(777), t.text(778), t.text(779)};
    int i = 0;
    for (const auto& [name, text] : tools) {
        QAction* action = m_popPrint->addAction(text);
        action->setObjectName(QString::fromLatin1(name));
        action->setToolTip(tips[i++]);
        const QString tool = action->objectName();
        connect(action, &QAction::triggered, this, [this, tool] { ActiveBarlog_ToolClick(tool); });
        if (i == 1)
            m_popPrint->addSeparator();
    }
    auto* print = new QToolButton;
    print->setObjectName(QStringLiteral("Print"));
    print->setText(t.text(772));
    print->setIcon(
        QIcon::fromTheme(QStringLiteral("document-print"), style()->standardIcon(QStyle::SP_DialogSaveButton)));
    print->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    print->setPopupMode(QToolButton::InstantPopup);
    print->setMenu(m_popPrint);
    ActiveBarlog->addWidget(print);
    // The right mouse button on the bar opens the print pop-up, as on the grid.
    ActiveBarlog->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(ActiveBarlog, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& at) { m_popPrint->popup(ActiveBarlog->mapToGlobal(at)); });

    Zusammenfassung = new QTableWidget;
    Zusammenfassung->setObjectName(QStringLiteral("Zusammenfassung"));
    Zusammenfassung->setEditTriggers(QAbstractItemView::NoEditTriggers);
    Zusammenfassung->verticalHeader()->hide();
    Zusammenfassung->horizontalHeader()->hide();
    Zusammenfassung->setShowGrid(false);
    Zusammenfassung->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(Zusammenfassung, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& at) { m_popPrint->popup(Zusammenfassung->viewport()->mapToGlobal(at)); });

    detailButton = new QPushButton(t.text(771));
    detailButton->setObjectName(QStringLiteral("detailButton"));
    OKButton = new QPushButton(t.text(691));
    OKButton->setObjectName(QStringLiteral("OKButton"));
    OKButton->setDefault(true);
    connect(detailButton, &QPushButton::clicked, this, &logSummaryForm::detailButton_Click);
    connect(OKButton, &QPushButton::clicked, this, &logSummaryForm::OKButton_Click);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(detailButton);
    buttons->addStretch();
    buttons->addWidget(OKButton);
    auto* layout = new QVBoxLayout(this);
    layout->setMenuBar(ActiveBarlog);
    layout->addWidget(Zusammenfassung, 1);
    layout->addLayout(buttons);
    LogInitlogSummaryform();
}

logSummaryForm::~logSummaryForm() = default;

void logSummaryForm::LogInitlogSummaryform() {
    const core::ResStrings& t = m_ctx.strings;
    setWindowTitle(t.text(770));
    setWindowIcon(style()->standardIcon(QStyle::SP_FileDialogInfoView));
    const auto rows = log::logSummaryRows(m_ctx);
    log::LogInitlogSummaryText(m_ctx);
    Zusammenfassung->setColumnCount(2);
    Zusammenfassung->setRowCount(int(rows.size()));
    for (int r = 0; r < rows.size(); ++r) {
        auto* label = new QTableWidgetItem(rows[r].first);
        if (r == 0) {
            QFont bold = label->font();
            bold.setBold(true);
            label->setFont(bold);
        }
        Zusammenfassung->setItem(r, 0, label);
        Zusammenfassung->setItem(r, 1, new QTableWidgetItem(rows[r].second));
    }
    // The window fits its rows: columns as wide as their longest text.
    Zusammenfassung->resizeColumnsToContents();
    Zusammenfassung->resizeRowsToContents();
    Zusammenfassung->horizontalHeader()->setStretchLastSection(true);
    int height = 2 * Zusammenfassung->frameWidth();
    for (int r = 0; r < Zusammenfassung->rowCount(); ++r)
        height += Zusammenfassung->rowHeight(r);
    Zusammenfassung->setMinimumHeight(height);
    Zusammenfassung->setMinimumWidth(Zusammenfassung->columnWidth(0) + Zusammenfassung->columnWidth(1) + 40);
}

log_Form* logSummaryForm::details() {
    if (!m_details)
        m_details = new log_Form(m_ctx, this);
    return m_details;
}

void logSummaryForm::detailButton_Click() {
    details()->LogInitlogForm();
    details()->show();
    details()->raise();
}

void logSummaryForm::OKButton_Click() {
    hide();
    m_ctx.log.LogHasError = false;
    accept();
}

void logSummaryForm::ActiveBarlog_ToolClick(const QString& tool) {
    if (tool == u"PrinterEinstellungen") {
        m_printer.PrinterEinstellungen(this);
    } else if (tool == u"Printall") {
        m_ctx.log.LogPrintMode = QStringLiteral("all");
        log::logPrint(m_ctx, m_ctx.log.LogPrintMode);
    } else if (tool == u"Printdetails") {
        m_ctx.log.LogPrintMode = QStringLiteral("details");
        log::logPrint(m_ctx, m_ctx.log.LogPrintMode);
    } else if (tool == u"Printsummary") {
        log::logPrintSummary(m_ctx);
    }
}

void showLogSummary(core::Context& ctx, QWidget* parent, LogPrinter* printer) {
    LogPrinter own;
    logSummaryForm form(ctx, printer ? *printer : own, parent);
    form.exec();
}

} // namespace tsr::ui
