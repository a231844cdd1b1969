// SPDX-License-Identifier: GPL-3.0-or-later
// The process-wide server slots. The AT-command server is made on demand by the
// phone layer; the file-transfer server's slot is filled by the link session
// when the phone offers OBEX and the setting allows it; the PIM's application
// object is filled by the PIM session.
#pragma once

#include <QString>
#include <memory>

namespace tsr::phone {
class ATCServer;
class GDXServerInterface;
} // namespace tsr::phone
namespace tsr::pim {
class Application;
}

namespace tsr::core {

struct Servers {
    std::shared_ptr<phone::ATCServer> ATCServer;
    std::shared_ptr<phone::GDXServerInterface> GDXServer;
    std::shared_ptr<pim::Application> MOL;
    QString ATCPortSet; // the port last given to the AT-command server
    // The AT-command server whose phone was last asked for OBEX, so each link is asked once.
    std::weak_ptr<phone::ATCServer> FileTransferProbed;
    QString FileTransferProbedPort;
};

} // namespace tsr::core
