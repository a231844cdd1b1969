// SPDX-License-Identifier: GPL-3.0-or-later
// The tool bar's bands and tools as data: each tool has an enabled state, a
// visibility and a caption per band. The window renders it; every enable rule
// of the program works on this model, so it runs without a display.
#pragma once

#include <QHash>
#include <QString>

namespace tsr::core {

struct ToolState {
    bool enabled = true;
    bool visible = true;
    QString caption;
    QString description;
};

class ToolsModel {
public:
    // The tool `tool` of band `band`; created enabled and visible on first use.
    ToolState& tool(const QString& band, const QString& tool);
    const ToolState* find(const QString& band, const QString& tool) const;

    void setEnabled(const QString& band, const QString& tool, bool on) { this->tool(band, tool).enabled = on; }
    void setVisible(const QString& band, const QString& tool, bool on) { this->tool(band, tool).visible = on; }
    bool isEnabled(const QString& band, const QString& tool) const;
    bool isVisible(const QString& band, const QString& tool) const;

    // Bands as a whole.
    void setBandVisible(const QString& band, bool on) { m_bandVisible[band] = on; }
    bool isBandVisible(const QString& band) const { return m_bandVisible.value(band, true); }

    // Bumped on every change through the setters, so a view knows to redraw.
    int revision() const { return m_revision; }

private:
    QHash<QString, ToolState> m_tools; // key: band + '/' + tool
    QHash<QString, bool> m_bandVisible;
    int m_revision = 0;
};

} // namespace tsr::core
