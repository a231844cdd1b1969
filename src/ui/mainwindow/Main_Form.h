// SPDX-License-Identifier: GPL-3.0-or-later
// The main window: the menu bar and the tool band drawn from the tools model,
// the two grids (one shown, after the active list), and the status line drawn
// from the status-bar model. Every click goes to the command layer's one
// dispatcher; the window itself decides nothing.
#pragma once

#include "core/UserInterface.h"

#include <QHash>
#include <QMainWindow>
#include <optional>

class QAction;
class QLabel;
class QMenu;
class QStackedWidget;
class QTabBar;
class QTimer;
class QToolBar;

namespace tsr::core {
struct Context;
}

namespace tsr::ui {

class EntryGrid;

struct FindRequest {
    QString text;
    bool forward = true;
    bool fromCurrent = true;
    bool wholeField = false;
    int column = -1; // -1: every shown column
};

class Main_Form : public QMainWindow {
    Q_OBJECT
public:
    explicit Main_Form(core::Context& ctx, QWidget* parent = nullptr);

    EntryGrid* grid(int list) const;
    EntryGrid* activeGrid() const;
    // The action of `tool` in `band` ("TSRTools", "TSREntryMenu", ...), or null.
    QAction* action(const QString& band, const QString& tool) const;

    // The tools model or the status line changed: draw them anew.
    void refreshTools();
    void refreshStatusBar();
    // The list's table changed (0 calendar, 1 contacts).
    void refreshGrid(int list);

    // Toggles the active grid between "Tabelle" and "Karten", keeping the current row.
    void SwitchGridView();
    // Runs a search on the active grid from the current row; false when nothing was found.
    bool findEntry(const FindRequest& request);
    // TSRSearch: the last search again, from the row after the current one.
    void GridExFindStart();
    const std::optional<FindRequest>& lastFind() const { return m_lastFind; }

    // The frame as the settings keep it, and the settings' frame applied.
    core::WindowGeometry geometryInTwips() const;
    void applySavedGeometry();
    void applySavedFont();

    // The window unloads as by code: the close rules still decide.
    void unload();

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void buildMenus();
    void buildToolBar();
    void buildStatusBar();
    QAction* makeAction(const QString& band, const QString& tool, const QString& icon, const QString& shortcut);
    void toolClick(const QString& tool);

    core::Context& m_ctx;
    QHash<QString, QAction*> m_actions; // key: band + '.' + tool
    QHash<QString, QMenu*> m_menus;     // MainMenu's entries by tool
    QToolBar* m_tools = nullptr;
    QTabBar* m_listTabs = nullptr;
    QStackedWidget* m_gridStack = nullptr;
    EntryGrid* m_grids[2] = {nullptr, nullptr};
    QLabel* m_panelMobileIcon = nullptr;
    QLabel* m_panelMobile = nullptr;
    QLabel* m_panelMobileStatus = nullptr;
    QLabel* m_panelEntryCounter = nullptr;
    QLabel* m_panelProgress = nullptr;
    QTimer* m_watch = nullptr;
    int m_drawnRevision = -1;
    bool m_unloaded = false;
    std::optional<FindRequest> m_lastFind;
};

} // namespace tsr::ui
