// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ToolsModel.h"

namespace tsr::core {

static QString key(const QString& band, const QString& tool) {
    return band + QLatin1Char('/') + tool;
}

ToolState& ToolsModel::tool(const QString& band, const QString& tool) {
    ++m_revision;
    return m_tools[key(band, tool)];
}

const ToolState* ToolsModel::find(const QString& band, const QString& tool) const {
    auto it = m_tools.constFind(key(band, tool));
    return it == m_tools.constEnd() ? nullptr : &*it;
}

bool ToolsModel::isEnabled(const QString& band, const QString& tool) const {
    const ToolState* t = find(band, tool);
    return t ? t->enabled : true;
}

bool ToolsModel::isVisible(const QString& band, const QString& tool) const {
    const ToolState* t = find(band, tool);
    return t ? t->visible : true;
}

} // namespace tsr::core
