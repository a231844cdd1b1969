// SPDX-License-Identifier: GPL-3.0-or-later
// The main window's commands without the window: one dispatcher over the tools
// model, the enable rules, the families of commands (read, transfer, clear), and
// the close rules. The window draws the tools model and sends every click here.
#pragma once

#include <QString>

namespace tsr::core {
struct Context;
}

namespace tsr::main {

// The one dispatcher: `tool` is the tool's name, as in the tools model.
void ActiveBar21_ToolClick(core::Context& ctx, const QString& tool);

void OnOffActiveBar(core::Context& ctx);
void OnOffActiveBarButton(core::Context& ctx);
void SetMenus_Click(core::Context& ctx);
// The tools' start state by SaveTyp, Sync and the PIM.
void setStartTools(core::Context& ctx);
void TSRInitForm(core::Context& ctx);

// The command families, for the active list or the named one.
enum class List { Active, Both, Calendar, Contacts };
void ReadOrganizer(core::Context& ctx, List list);
void ReadMobile(core::Context& ctx, List list);
void ClearGrid(core::Context& ctx, List list);
void ClearMobile(core::Context& ctx, List list);
void Transfer(core::Context& ctx, List list);
void TestMobile_Click(core::Context& ctx);

// The close request: true when the close is to be cancelled.
bool Form_QueryUnload(core::Context& ctx, bool fromControlMenu);
// The main window goes: settings saved (unless a second instance, KILL or silent), log file written.
void Form_Unload(core::Context& ctx);

} // namespace tsr::main
