// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/mainwindow/Main_Form.h"

#include "core/Context.h"
#include "main/ActiveBar.h"
#include "main/MainCommands.h"
#include "ui/Icons.h"
#include "ui/grids/EntryGrid.h"
#include "ui/grids/EntryTableModel.h"

#include <QAction>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTabBar>
#include <QTableView>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>

namespace tsr::ui {

namespace {

// Window frames are kept in twips: 15 to a pixel.
constexpr int kTwipsPerPixel = 15;

QString key(const QString& band, const QString& tool) {
    return band + u'.' + tool;
}

} // namespace

Main_Form::Main_Form(core::Context& ctx, QWidget* parent) : QMainWindow(parent), m_ctx(ctx) {
    setObjectName(QStringLiteral("Main_Form"));
    setWindowIcon(programIcon());
    initIconTheme();
    main::InitActiveBar(m_ctx);

    auto* central = new QWidget(this);
    auto* layout = new QVBoxLayout(central);
    layout->setContentsMargins(4, 2, 4, 0);
    layout->setSpacing(2);
    m_listTabs = new QTabBar(central);
    m_listTabs->setObjectName(QStringLiteral("TabStrip"));
    m_listTabs->setDrawBase(false);
    m_listTabs->setExpanding(false);
    m_listTabs->addTab(gridImage(1), QString());
    m_listTabs->addTab(themedIcon(QStringLiteral("x-office-address-book")), QString());
    layout->addWidget(m_listTabs);
    m_gridStack = new QStackedWidget(central);
    for (int list : {0, 1}) {
        m_grids[list] = new EntryGrid(m_ctx, list, m_gridStack);
        m_gridStack->addWidget(m_grids[list]);
        connect(m_grids[list], &EntryGrid::openRequested, this, [this] { toolClick(QStringLiteral("TSROpenEntry")); });
    }
    layout->addWidget(m_gridStack, 1);
    setCentralWidget(central);
    connect(m_listTabs, &QTabBar::tabBarClicked, this, [this](int tab) {
        if (tab >= 0 && tab != m_ctx.settings.ActiveAPP)
            toolClick(tab == 1 ? QStringLiteral("vCardView") : QStringLiteral("vCalView"));
    });

    buildMenus();
    buildToolBar();
    buildStatusBar();
    applySavedFont();

    // The command layer changes the tools model without telling anyone: draw it
    // anew whenever its revision moved on.
    m_watch = new QTimer(this);
    m_watch->setInterval(100);
    connect(m_watch, &QTimer::timeout, this, [this] {
        if (m_ctx.tools.revision() != m_drawnRevision)
            refreshTools();
    });
    m_watch->start();
    refreshTools();
    refreshStatusBar();
    resize(860, 560);
}

QAction* Main_Form::makeAction(const QString& band, const QString& tool, const QString& icon, const QString& shortcut) {
    auto* a = new QAction(themedIcon(icon), QString(), this);
    a->setObjectName(key(band, tool));
    if (!shortcut.isEmpty()) {
        a->setShortcut(QKeySequence(shortcut));
        a->setShortcutContext(Qt::WindowShortcut);
    }
    connect(a, &QAction::triggered, this, [this, tool] { toolClick(tool); });
    m_actions.insert(key(band, tool), a);
    return a;
}

void Main_Form::buildMenus() {
    QMenuBar* bar = menuBar();
    bar->setObjectName(QStringLiteral("MainMenu"));
    for (const main::ToolDef& entry : main::mainMenuTools()) {
        QMenu* menu = bar->addMenu(QString());
        menu->setObjectName(entry.tool);
        menu->menuAction()->setObjectName(key(QStringLiteral("MainMenu"), entry.tool));
        m_menus.insert(entry.tool, menu);
        const QString band = main::menuBandOf(entry.tool);
        for (const main::BandDef& def : main::activeBarBands()) {
            if (def.band != band)
                continue;
            for (const main::ToolDef& t : def.tools) {
                if (t.tool.isEmpty())
                    menu->addSeparator();
                else
                    menu->addAction(makeAction(band, t.tool, t.icon, t.shortcut));
            }
        }
    }
}

void Main_Form::buildToolBar() {
    m_tools = addToolBar(QString());
    m_tools->setObjectName(QStringLiteral("TSRTools"));
    m_tools->setMovable(false);
    m_tools->setToolButtonStyle(Qt::ToolButtonIconOnly);
    m_tools->setIconSize(QSize(24, 24));
    for (const main::BandDef& def : main::activeBarBands()) {
        if (def.band != u"TSRTools")
            continue;
        for (const main::ToolDef& t : def.tools) {
            if (t.tool.isEmpty())
                m_tools->addSeparator();
            else
                m_tools->addAction(makeAction(def.band, t.tool, t.icon, QString()));
        }
    }
}

void Main_Form::buildStatusBar() {
    QStatusBar* bar = statusBar();
    bar->setObjectName(QStringLiteral("DORStatusBar"));
    auto panel = [bar](const char* name, int stretch) {
        auto* l = new QLabel(bar);
        l->setObjectName(QString::fromLatin1(name));
        l->setTextFormat(Qt::PlainText);
        l->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
        l->setContentsMargins(4, 0, 4, 0);
        bar->addWidget(l, stretch);
        return l;
    };
    m_panelMobileIcon = new QLabel(bar);
    m_panelMobileIcon->setObjectName(QStringLiteral("MobilePicture"));
    bar->addWidget(m_panelMobileIcon);
    m_panelMobile = panel("Mobile", 0);
    m_panelMobileStatus = panel("MobileStatus", 0);
    m_panelEntryCounter = panel("EntryCounter", 1);
    m_panelProgress = panel("ProgressIndicator", 0);
}

EntryGrid* Main_Form::grid(int list) const {
    return m_grids[list == 1 ? 1 : 0];
}

EntryGrid* Main_Form::activeGrid() const {
    return grid(m_ctx.settings.ActiveAPP);
}

QAction* Main_Form::action(const QString& band, const QString& tool) const {
    return m_actions.value(key(band, tool));
}

void Main_Form::toolClick(const QString& tool) {
    for (EntryGrid* g : m_grids)
        g->leaveEditMode();
    main::ActiveBar21_ToolClick(m_ctx, tool);
    if (m_unloaded)
        return;
    refreshTools();
}

void Main_Form::refreshTools() {
    m_drawnRevision = m_ctx.tools.revision();
    setWindowTitle(m_ctx.title());
    const bool cards = activeGrid()->showsCards();
    const main::SwitchViewLook look = main::switchViewLook(cards);
    for (auto it = m_actions.constBegin(); it != m_actions.constEnd(); ++it) {
        const QString band = it.key().section(u'.', 0, 0);
        const QString tool = it.key().section(u'.', 1);
        QAction* a = it.value();
        const core::ToolState* state = m_ctx.tools.find(band, tool);
        if (!state)
            continue;
        a->setEnabled(state->enabled);
        a->setVisible(state->visible);
        QString caption = state->caption;
        QString tip = state->description.isEmpty() ? state->caption : state->description;
        if (tool == u"TSRSwitchView") {
            caption = m_ctx.strings.text(look.caption);
            tip = caption;
            a->setIcon(themedIcon(look.icon));
        }
        a->setText(band == u"TSRTools" ? QString(tip).remove(u'&') : caption);
        QString shortcutHint;
        for (const QString& menuBand : {QStringLiteral("TSROrganizerMenu"), QStringLiteral("TSREntryMenu"),
                                        QStringLiteral("TSRExtraMenu"), QStringLiteral("mnuHelpMenu")}) {
            if (QAction* twin = m_actions.value(key(menuBand, tool)); twin && !twin->shortcut().isEmpty())
                shortcutHint = twin->shortcut().toString(QKeySequence::NativeText);
        }
        QString plainTip = QString(tip).remove(u'&');
        if (!shortcutHint.isEmpty())
            plainTip += QStringLiteral(" (") + shortcutHint + u')';
        a->setToolTip(plainTip);
        a->setStatusTip(QString(tip).remove(u'&'));
    }
    for (auto it = m_menus.constBegin(); it != m_menus.constEnd(); ++it) {
        const core::ToolState* state = m_ctx.tools.find(QStringLiteral("MainMenu"), it.key());
        if (!state)
            continue;
        it.value()->setTitle(state->caption);
        it.value()->menuAction()->setEnabled(state->enabled);
    }
    m_tools->setVisible(m_ctx.tools.isBandVisible(QStringLiteral("TSRTools")));
    m_listTabs->setTabText(0, m_ctx.strings.text(515));
    m_listTabs->setTabText(1, m_ctx.strings.text(516));
    const int list = m_ctx.settings.ActiveAPP == 1 ? 1 : 0;
    m_listTabs->setCurrentIndex(list);
    if (m_gridStack->currentWidget() != m_grids[list])
        m_gridStack->setCurrentWidget(m_grids[list]);
}

void Main_Form::refreshStatusBar() {
    const core::StatusBarModel& s = m_ctx.statusBar;
    m_panelMobile->setText(s.Mobile);
    const QString picture = s.MobilePicture == core::MobileIcon::Connected  ? QStringLiteral("phone")
                            : s.MobilePicture == core::MobileIcon::NoMobile ? QStringLiteral("network-offline")
                                                                            : QString();
    m_panelMobileIcon->setPixmap(picture.isEmpty() ? QPixmap() : themedIcon(picture).pixmap(16, 16));
    m_panelMobileStatus->setText(s.MobileStatus);
    m_panelEntryCounter->setText(s.EntryCounter);
    m_panelProgress->setText(s.ProgressIndicator);
    m_panelProgress->setVisible(!s.ProgressIndicator.isEmpty());
}

void Main_Form::refreshGrid(int list) {
    if (list == 0 || list == 1)
        grid(list)->reload();
    refreshTools();
}

void Main_Form::SwitchGridView() {
    EntryGrid* g = activeGrid();
    g->setLayoutName(g->showsCards() ? QStringLiteral("Tabelle") : QStringLiteral("Karten"));
    refreshTools();
}

bool Main_Form::findEntry(const FindRequest& request) {
    m_lastFind = request;
    EntryGrid* g = activeGrid();
    const int current = g->currentRow();
    int from = 0;
    if (request.fromCurrent && current >= 0)
        from = current;
    else if (!request.forward)
        from = g->model()->rowCount() - 1;
    const int row = g->model()->findRow(request.text, from, request.forward, request.column, request.wholeField);
    if (row < 0)
        return false;
    g->setCurrentRow(row);
    return true;
}

void Main_Form::GridExFindStart() {
    if (!m_lastFind) {
        return;
    }
    EntryGrid* g = activeGrid();
    const int current = g->currentRow();
    const int rows = g->model()->rowCount();
    if (rows == 0)
        return;
    const int step = m_lastFind->forward ? 1 : -1;
    const int from = current < 0 ? 0 : (current + step + rows) % rows;
    const int row =
        g->model()->findRow(m_lastFind->text, from, m_lastFind->forward, m_lastFind->column, m_lastFind->wholeField);
    if (row < 0 || row == current) {
        m_ctx.ui->msgBox(m_ctx.strings.text(row < 0 ? 735 : 736), core::MsgButtons::OK, core::MsgIcon::Information,
                         m_ctx.strings.text(738));
        return;
    }
    g->setCurrentRow(row);
}

core::WindowGeometry Main_Form::geometryInTwips() const {
    core::WindowGeometry g;
    g.state = isMinimized() ? 1 : isMaximized() ? 2 : 0;
    // The frame while the state is normal; maximised, the normal frame is the one kept.
    const QRect r = g.state == 0 ? frameGeometry() : normalGeometry();
    g.width = r.width() * kTwipsPerPixel;
    g.height = r.height() * kTwipsPerPixel;
    g.top = r.top() * kTwipsPerPixel;
    g.left = r.left() * kTwipsPerPixel;
    return g;
}

void Main_Form::applySavedGeometry() {
    const auto& s = m_ctx.settings;
    if (s.Width > 0 && s.Height > 0) {
        QRect wanted(s.Left / kTwipsPerPixel, s.Top / kTwipsPerPixel, s.Width / kTwipsPerPixel,
                     s.Height / kTwipsPerPixel);
        // A frame saved on a larger or another screen is pulled onto this one.
        if (const QScreen* screen = this->screen()) {
            const QRect avail = screen->availableGeometry();
            wanted.setSize(wanted.size().boundedTo(avail.size()));
            if (!avail.intersects(wanted))
                wanted.moveTopLeft(avail.topLeft());
        }
        resize(wanted.size());
        move(wanted.topLeft());
    }
    switch (s.WindowState) {
    case 2:
        setWindowState(Qt::WindowMaximized);
        break;
    case 1:
        setWindowState(Qt::WindowMinimized);
        break;
    default:
        setWindowState(Qt::WindowNoState);
        break;
    }
}

void Main_Form::applySavedFont() {
    const auto& s = m_ctx.settings;
    if (s.FormFont.isEmpty())
        return;
    QFont f(s.FormFont);
    if (s.FormFontSize > 0)
        f.setPointSizeF(s.FormFontSize);
    setFont(f);
}

void Main_Form::unload() {
    close();
}

void Main_Form::closeEvent(QCloseEvent* event) {
    if (!m_unloaded) {
        // The window's own close button counts as the control menu.
        const bool cancel = main::Form_QueryUnload(m_ctx, event->spontaneous());
        if (cancel) {
            event->ignore();
            return;
        }
        m_unloaded = true;
    }
    main::Form_Unload(m_ctx);
    m_watch->stop();
    event->accept();
}

void Main_Form::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        for (EntryGrid* g : m_grids)
            if (g)
                g->reload();
}

} // namespace tsr::ui
