// SPDX-License-Identifier: GPL-3.0-or-later
// The common error path: a failed call becomes a friendly text, an error box
// (unless the run is silent, a PIM failure has been counted, or the error is
// marked as known with "~") and a row of the error log. The worst failures
// switch the mobile commands off or empty the server slots.
#include "core/ErrorReport.h"

#include "log/LogWrite.h"

#include <QStringList>
#include <array>
#include <utility>

namespace tsr::core {

namespace {

constexpr int32_t code(uint32_t hresult) {
    return static_cast<int32_t>(hresult);
}

const QString kTools = QStringLiteral("TSRTools");
const QString kClearMobileCal = QStringLiteral("TSRClearMobileCal");

constexpr std::array kGdxReturned{code(0x8004A001), code(0x8004A004), code(0x8004A002), code(0x8004B001),
                                  code(0x80048001), code(0x80070050), code(0x80030002), code(0x8007000E),
                                  code(0x80030070), code(0x80004005), code(0x8007041C), code(0x8007001A),
                                  code(0x8007006F)};
constexpr std::array kPimNotAvailable{code(0x98A4011D), code(0xA504011D)};
constexpr std::array kPimFailed{code(0x8E64010F), code(0x9494010F), code(0x98B4010F), code(0x9074010F),
                                code(0xBDC4010F), code(0xC1E4010F), code(0xC824010F), code(0xC404010F),
                                code(0xCE54010F), code(0xD274010F)};

constexpr int32_t kTimeout = code(0x80010001);
constexpr int32_t kAccessDenied = code(0x80070005);
constexpr int32_t kNoResponse = code(0x80070002);
constexpr int32_t kNotCommunication = code(0x80000001);
// The one entry of the server's name table that carries no name.
constexpr int32_t kAtcUnnamed = code(0x80042229);

template <size_t N> bool isIn(const std::array<int32_t, N>& list, int32_t number) {
    for (int32_t n : list)
        if (n == number)
            return true;
    return false;
}

QString lines(const Context& ctx, std::initializer_list<int> numbers) {
    QStringList parts;
    for (int n : numbers)
        parts << ctx.strings.text(n);
    return parts.join(QStringLiteral("\r\n"));
}

// What a number does besides choosing its text.
enum class SideEffect { None, DisableClear, DropServers, CountPimFailure };

struct Mapping {
    QString text;
    SideEffect effect = SideEffect::None;
};

Mapping mapNumber(const Context& ctx, int32_t number, const QString& modul) {
    if (number == err::PimFolder)
        return {lines(ctx, {714, 715, 716})};
    if (number == err::ServerGone)
        return {lines(ctx, {717, 718, 719}), SideEffect::DropServers};
    if (isIn(kGdxReturned, number))
        return {lines(ctx, {723, 713}), SideEffect::DisableClear};
    if (number == kTimeout)
        return {lines(ctx, {724, 713}), SideEffect::DisableClear};
    if (number == kAccessDenied) {
        if (ctx.phone.MobileModel == u"QX71" && modul == u"GDX")
            return {lines(ctx, {720, 721})};
        return {ctx.strings.text(726)};
    }
    if (number == kNoResponse)
        return {lines(ctx, {711, 712}), SideEffect::DisableClear};
    if (isIn(kPimNotAvailable, number))
        return {lines(ctx, {714, 715, 716}), SideEffect::CountPimFailure};
    if (isIn(kPimFailed, number))
        return {lines(ctx, {714, 715})};
    if (number <= -2001 && number != kNotCommunication)
        return {ctx.strings.text(722)};
    return {};
}

void apply(Context& ctx, SideEffect effect) {
    switch (effect) {
    case SideEffect::None:
        break;
    case SideEffect::DropServers:
        // Empty slots make the next step of either driver create a fresh server.
        ctx.servers.GDXServer.reset();
        ctx.servers.ATCServer.reset();
        [[fallthrough]];
    case SideEffect::DisableClear:
        ctx.tools.setEnabled(kTools, kClearMobileCal, false);
        break;
    case SideEffect::CountPimFailure:
        ++ctx.log.PIMErrorCount;
        break;
    }
}

} // namespace

QString friendlyText(const Context& ctx, int32_t number, const QString& modul) {
    return mapNumber(ctx, number, modul).text;
}

QString atcErrorName(int32_t number) {
    static const std::pair<uint32_t, const char16_t*> names[] = {
        {0x80042000, u"ATC_E_PHONEFAILURE"},       {0x80042001, u"ATC_E_NOCONNECTION"},
        {0x80042002, u"ATC_E_LINKRESERVED"},       {0x80042005, u"ATC_E_PH_PINREQUIRED"},
        {0x80042014, u"ATC_E_MEMORYFULL"},         {0x80042015, u"ATC_E_INVALIDINDEX"},
        {0x80042016, u"ATC_E_NOTFOUND"},           {0x80042017, u"ATC_E_MEMORYFAILURE"},
        {0x80042018, u"ATC_E_TEXTTOOLONG"},        {0x80042019, u"ATC_E_INVCHARINTEXT"},
        {0x8004201A, u"ATC_E_DIALSTRINGTOOLONG"},  {0x8004201B, u"ATC_E_INVCHARINDIAL"},
        {0x8004201E, u"ATC_E_NONETWORKSERVICE"},   {0x8004201F, u"ATC_E_NETWORKTIMEOUT"},
        {0x80042130, u"ATC_E_INVALIDPDU"},         {0x80042131, u"ATC_E_INVALIDTEXTMODE"},
        {0x8004214A, u"ATC_E_SMSCUNKNOWN"},        {0x80042200, u"ATC_E_CALLBARREDBYBLACKLIST"},
        {0x80042201, u"ATC_E_PHONELINKRESERVED"},  {0x80042202, u"ATC_E_INVALIDDIALSTRING"},
        {0x80042203, u"ATC_E_PHONEBUSY"},          {0x80042226, u"ATC_E_PH_SIMPUKREQUIRED"},
        {0x80042227, u"ATC_E_NTF_SIMPINREQUIRED"}, {0x80042228, u"ATC_E_NTFSIM_PUKREQUIRED"},
        {0x8004222A, u"ATC_E_PH_NETPUKREQUIRED"},  {0x8004222B, u"ATC_E_PH_SPPINREQUIRED"},
        {0x8004222C, u"ATC_E_PH_SPPUKREQUIRED"},   {0x8004222D, u"ATC_E_PH_CPPINREQUIRED"},
        {0x8004222E, u"ATC_E_PH_CPPUKREQUIRED"},   {0x8004222F, u"ATC_E_FEATUREPINREQUIRED"},
        {0x80042230, u"ATC_E_FEATUREPUKREQUIRED"},
    };
    if (number == kAtcUnnamed)
        return QString::number(number);
    for (const auto& [n, name] : names)
        if (code(n) == number)
            return QString::fromUtf16(name);
    return {};
}

TsrError asTsrError(const std::exception& e, const QString& source) {
    return TsrError(err::InvalidProcedureCall, source, QString::fromLocal8Bit(e.what()));
}

void ErrorsCode(Context& ctx, const TsrError& error, const QString& modul, const QString& proc, const QString& extra) {
    const int32_t number = error.number();
    if (number == 0)
        return;
    Mapping mapping = mapNumber(ctx, number, modul);
    apply(ctx, mapping.effect);
    QString hint = std::move(mapping.text);
    if (modul == u"ATC") {
        const QString name = atcErrorName(number);
        if (!name.isEmpty())
            hint = name;
    }
    if (!extra.isEmpty())
        hint += QStringLiteral("\r\n") + extra;
    // A reported error ends the start-up phase, so that the main window can be closed.
    ctx.flags.GlobalStartDone = true;

    if (!ctx.flags.GlobalSilent && ctx.log.PIMErrorCount == 0 && !error.description().contains(u'~')) {
        const QString text = ctx.strings.text(480) + hint + QStringLiteral("\r\n\r\n") + ctx.strings.text(482) +
                             QString::number(number) + QStringLiteral("\r\n") + error.description() +
                             QStringLiteral("\r\n");
        ctx.ui->msgBox(text, MsgButtons::OK, MsgIcon::Exclamation, ctx.title());
        if (ctx.ui->mainFormVisibleAndEnabled())
            ctx.ui->focusMainForm();
    } else if (ctx.flags.GlobalSilent) {
        ctx.ui->silentError(number, error.description(), modul, proc);
    }
    log::logWriteError(ctx, error, hint, modul, proc);
}

void ErrorReport(Context& ctx, const TsrError& error, const QString& modul, const QString& proc, const QString& extra) {
    ErrorsCode(ctx, error, modul, proc, extra);
}

} // namespace tsr::core
