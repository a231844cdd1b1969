// SPDX-License-Identifier: GPL-3.0-or-later
// Reading a phone's folder listing: the files a mask takes, in the phone's order,
// and documents that are no listing.
#include "phone/ObexListing.h"

#include <gtest/gtest.h>

using namespace tsr;

namespace {

const QByteArray kListing = "<?xml version=\"1.0\"?>\n"
                            "<!DOCTYPE folder-listing SYSTEM \"obex-folder-listing.dtd\">\n"
                            "<folder-listing version=\"1.0\">\n<parent-folder/>\n<folder name=\"sub\"/>\n"
                            "<file name=\"info.log\" size=\"60\"/>\n<file name=\"10.vcf\" size=\"210\"/>\n"
                            "<file name=\"2.VCF\" size=\"7\"/>\n<file name=\"a&amp;b.vcf\" size=\"1\"/>\n"
                            "</folder-listing>\n";

} // namespace

TEST(ObexListing, TheMaskTakesFilesInThePhonesOrder) {
    struct Case {
        const char* mask;
        QStringList names;
    };
    const Case cases[] = {
        {"*.vcf", {QStringLiteral("10.vcf"), QStringLiteral("2.VCF"), QStringLiteral("a&b.vcf")}},
        {"*",
         {QStringLiteral("info.log"), QStringLiteral("10.vcf"), QStringLiteral("2.VCF"), QStringLiteral("a&b.vcf")}},
        {"",
         {QStringLiteral("info.log"), QStringLiteral("10.vcf"), QStringLiteral("2.VCF"), QStringLiteral("a&b.vcf")}},
        {"?.vcf", {QStringLiteral("2.VCF")}},
        {"*.vcs", {}},
    };
    for (const Case& c : cases) {
        const auto rows = phone::obexListedFiles(kListing, QString::fromLatin1(c.mask));
        ASSERT_TRUE(rows) << c.mask;
        QStringList names;
        for (const QStringList& row : *rows)
            names << row.value(0);
        EXPECT_EQ(names, c.names) << c.mask;
    }
    EXPECT_EQ(phone::obexListedFiles(kListing, QStringLiteral("10.vcf"))->value(0),
              (QStringList{QStringLiteral("10.vcf"), QStringLiteral("210")}));
}

TEST(ObexListing, AnythingElseIsNoListing) {
    const QByteArray documents[] = {
        "", "plain text",
        "<folder-listing><file name=\"1.vcf\"/>",           // cut off
        "<other><file name=\"1.vcf\" size=\"1\"/></other>", // not a listing
    };
    for (const QByteArray& document : documents)
        EXPECT_FALSE(phone::obexListedFiles(document, QStringLiteral("*"))) << document.constData();
    EXPECT_TRUE(phone::obexListedFiles("<folder-listing version=\"1.0\"/>", QStringLiteral("*"))->isEmpty());
}
