// SPDX-License-Identifier: GPL-3.0-or-later
// The PIM session at start and the contact folder walk.
#include "pim/DOROutlookSession.h"

#include "core/ErrorReport.h"
#include "core/Numbers.h"
#include "pim/local/LocalStore.h"

#include <QDir>

namespace tsr::pim {

namespace {

const QString kMain = QStringLiteral("Main_Modul");
const QString kMSOutlook = QStringLiteral("MSOutlook");
const QString kCrLf = QStringLiteral("\r\n");

core::ContactFolderRecord recordOf(const Folder& folder) {
    return {parentName(folder), folder.Name(), folder.EntryID(), folder.StoreID()};
}

void clearFolderSettings(core::Settings& s) {
    s.FolderEntryID.clear();
    s.FolderStoreID.clear();
    s.FolderParent.clear();
    s.FolderName.clear();
}

std::shared_ptr<Namespace> mapi(core::Context& ctx) {
    if (!ctx.servers.MOL)
        core::raise(core::err::ObjectNotSet, QStringLiteral("MAPI"));
    return ctx.servers.MOL->GetNamespace(QStringLiteral("MAPI"));
}

// The stored folder, or none when it cannot be opened.
std::shared_ptr<Folder> storedFolder(core::Context& ctx) {
    try {
        return mapi(ctx)->GetFolderFromID(ctx.settings.FolderEntryID, ctx.settings.FolderStoreID);
    } catch (const core::TsrError&) {
        return nullptr;
    }
}

} // namespace

bool PimOption(core::Context& ctx, const QString& token) {
    static const QString prefix = QStringLiteral("--pim=");
    if (!token.startsWith(prefix))
        return false;
    ctx.options.pim = QDir(token.mid(prefix.size())).absolutePath();
    return true;
}

QString PimStoreDir(const core::Context& ctx) {
    if (!ctx.options.pim.isEmpty())
        return QDir(ctx.options.pim).absolutePath();
    QString base = qEnvironmentVariable("XDG_DATA_HOME");
    if (base.isEmpty())
        base = QDir::homePath() + QStringLiteral("/.local/share");
    return QDir(base + QStringLiteral("/Tessarine/pim")).absolutePath();
}

bool Check4Outlook(core::Context& ctx) {
    if (ctx.flags.GlobalCommandNoOrg)
        return true;
    return core::guarded(ctx, kMain, QStringLiteral("Check4Outlook"), false, [&] {
        ctx.flags.GlobalOrganizerOK = false;
        // A running application is reused; otherwise the local store is opened.
        std::shared_ptr<Application> OL = ctx.servers.MOL;
        if (!OL) {
            try {
                OL = local::openLocalApplication(ctx, PimStoreDir(ctx));
            } catch (const core::TsrError&) {
                OL.reset();
            }
        }
        if (!OL)
            return true; // no PIM: the program runs without one, and says nothing

        QString name, version;
        bool nameRead = true, supported = true;
        try {
            name = OL->Name();
        } catch (const core::TsrError&) {
            nameRead = false;
        }
        if (nameRead && !name.isEmpty()) {
            try {
                version = OL->Version();
            } catch (const core::TsrError&) {
            }
            supported = core::Val(version) >= 8.0;
        }
        if (!nameRead || !supported) {
            const QString text = QStringLiteral("%1 %2").arg(name, version).trimmed() + kCrLf + ctx.strings.text(882);
            if (ctx.ui->msgBox(text, core::MsgButtons::YesNo, core::MsgIcon::Question, ctx.title()) ==
                core::MsgResult::Yes) {
                ctx.flags.GlobalOrganizerOK = false;
                return true;
            }
            if (!nameRead)
                ctx.flags.GlobalStartDone = true;
            return false;
        }

        ctx.servers.MOL = OL;
        ctx.flags.GlobalOrganizerOK = true;
        ctx.pim.PIMName = name;

        core::Settings& s = ctx.settings;
        std::shared_ptr<Folder> folder;
        bool failed = false;
        try {
            if (s.FolderEntryID.isEmpty() || s.FolderStoreID.isEmpty()) {
                folder = mapi(ctx)->GetDefaultFolder(olFolderContacts);
                if (folder) {
                    s.FolderEntryID = folder->EntryID();
                    s.FolderStoreID = folder->StoreID();
                    s.FolderParent = parentName(*folder);
                    s.FolderName = folder->Name();
                }
            } else {
                folder = mapi(ctx)->GetFolderFromID(s.FolderEntryID, s.FolderStoreID);
            }
        } catch (const core::TsrError&) {
            failed = true;
        }
        ctx.pim.GlobalContactFolder = failed ? nullptr : folder;
        if (failed || !folder)
            InitContactFolder(ctx);
        else
            PreSetFolderArray(ctx);

        if (!TestOLCalFolder(ctx) && ctx.pim.GlobalContactFolderCount < 1)
            ctx.flags.GlobalOrganizerOK = false;
        return true;
    });
}

bool TestOLCalFolder(core::Context& ctx) {
    return core::guarded(ctx, QStringLiteral("Allgemein"), QStringLiteral("TestOLCalFolder"), false, [&] {
        const QString source = QStringLiteral("Allgemein:TestOLCalFolder");
        std::shared_ptr<Folder> calendar;
        try {
            calendar = mapi(ctx)->GetDefaultFolder(olFolderCalendar);
        } catch (const core::TsrError&) {
        }
        if (!calendar)
            core::raise(core::err::PimFolder, source, ctx.strings.text(925));
        try {
            calendar->Items();
        } catch (const core::TsrError& e) {
            core::raise(core::err::PimFolder, source, ctx.strings.text(926) + kCrLf + e.description());
        }
        return true;
    });
}

bool InitContactFolder(core::Context& ctx) {
    return core::guarded(ctx, kMain, QStringLiteral("InitContactFolder"), false, [&] {
        core::Settings& s = ctx.settings;
        OutlookContactFolder(ctx, ctx.flags.GlobalSilent);
        if (ctx.pim.GlobalContactFolderCount < 1) {
            clearFolderSettings(s);
            return false;
        }
        if (auto folder = storedFolder(ctx)) {
            ctx.pim.GlobalContactFolder = folder;
            return true;
        }
        // The stored folder is gone: the records from index 1 on are tried, index 0 is not.
        for (int i = 1; i < ctx.pim.GlobalContactFolderCount; ++i) {
            const core::ContactFolderRecord& r = ctx.pim.GlobalContactFolderArray[i];
            s.FolderEntryID = r.EntryID;
            s.FolderStoreID = r.StoreID;
            s.FolderParent = r.Parent;
            s.FolderName = r.Name;
            if (auto folder = storedFolder(ctx)) {
                ctx.pim.GlobalContactFolder = folder;
                return true;
            }
        }
        clearFolderSettings(s);
        core::raise(core::err::PimFolder, QStringLiteral("Main_Modul:Check4Outlook"), ctx.strings.text(888));
    });
}

bool PreSetFolderArray(core::Context& ctx) {
    ctx.pim.GlobalContactFolderCount = 0;
    ctx.pim.GlobalContactFolderArray = {core::ContactFolderRecord{}};
    if (ctx.pim.GlobalContactFolder) {
        ctx.pim.GlobalContactFolderArray[0] = recordOf(*ctx.pim.GlobalContactFolder);
        ctx.pim.GlobalContactFolderCount = 1;
    }
    return true;
}

void OutlookContactFolder(core::Context& ctx, bool silent) {
    core::guarded(ctx, kMSOutlook, QStringLiteral("OutlookContactFolder"), [&] {
        ctx.pim.GlobalContactFolderArray.clear();
        ctx.pim.GlobalContactFolderCount = 0;
        if (!silent)
            ctx.status.SetText(ctx.strings.text(556));
        for (const auto& top : mapi(ctx)->Folders())
            if (!OutlookContactFolderList(ctx, *top, ctx.pim.GlobalContactFolderArray, silent))
                break;
    });
}

namespace {
// True when `folder` is the store's default contact folder, whatever items it
// appears to hold (a stray calendar file in it makes it look like a calendar).
bool isDefaultContactFolder(core::Context& ctx, const Folder& folder) {
    try {
        const auto contacts = mapi(ctx)->GetDefaultFolder(olFolderContacts);
        return contacts && contacts->EntryID() == folder.EntryID() && contacts->StoreID() == folder.StoreID();
    } catch (const core::TsrError&) {
        return false;
    }
}
} // namespace

bool OutlookContactFolderList(core::Context& ctx, Folder& folder, QList<core::ContactFolderRecord>& array,
                              bool silent) {
    return core::guarded(ctx, kMSOutlook, QStringLiteral("OutlookContactFolderList"), false, [&] {
        QList<std::shared_ptr<Folder>> children;
        try {
            children = folder.Folders();
        } catch (const core::TsrError& e) {
            core::raise(core::err::PimFolder, QStringLiteral("MSOutlook:OutlookContactFolderList"),
                        e.description() + kCrLf + ctx.strings.text(946) + u' ' + folder.Name());
        }
        for (const auto& child : children) {
            if (!silent)
                ctx.status.SetText(ctx.strings.text(556) + kCrLf + child->Name());
            if (child->DefaultItemType() == olContactItem || isDefaultContactFolder(ctx, *child)) {
                array << recordOf(*child);
                ctx.pim.GlobalContactFolderCount = core::toInt16(array.size());
            }
            if (!child->Folders().isEmpty() && !OutlookContactFolderList(ctx, *child, array, silent))
                return false;
        }
        return true;
    });
}

ContactFolderList BuildOutlookContactFolderList(const core::Context& ctx) {
    ContactFolderList list;
    if (!ctx.flags.GlobalOrganizerOK)
        return list;
    for (int i = 0; i < ctx.pim.GlobalContactFolderCount; ++i) {
        const core::ContactFolderRecord& r = ctx.pim.GlobalContactFolderArray[i];
        list.entries << r.Parent + u'\\' + r.Name;
    }
    if (ctx.pim.GlobalContactFolderCount == 0)
        return list;
    if (!ctx.pim.GlobalContactFolder) {
        list.selected = 0;
        return list;
    }
    const QString name = ctx.pim.GlobalContactFolder->Name();
    const QString parent = parentName(*ctx.pim.GlobalContactFolder);
    for (int i = 0; i < list.entries.size(); ++i) {
        const core::ContactFolderRecord& r = ctx.pim.GlobalContactFolderArray[i];
        if (r.Name == name && r.Parent == parent) {
            list.selected = i;
            break;
        }
    }
    return list;
}

} // namespace tsr::pim
