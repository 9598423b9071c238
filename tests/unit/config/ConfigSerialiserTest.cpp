// The text writer, the XML writer and the inspection listing write one tree through one
// serialiser; each keeps its own layout byte for byte.

#include "config/ConfigSerialiser.h"
#include "config/Config.h"

#include "TestSupport.h"

#include <QDomDocument>
#include <QDomElement>
#include <QTemporaryDir>
#include <QTextStream>

#include <gtest/gtest.h>

namespace {

using libconfig::Config;
using libconfig::ConfigSerialiser;

// A tree with what the layouts must carry unchanged: quotes, markup characters, a tab and
// Latin-1 letters in values and names, an empty value, an empty block, a comment node (which
// no layout keeps) and a second top-level block (which the file writers drop).
void buildOddTree(Config &config, const QString &path)
{
    QDomDocument &document = *config.document();
    QDomElement root = document.createElement(path);
    document.appendChild(root);
    root.setAttribute(QStringLiteral("top"), QStringLiteral("say \"hi\" <b> & c\t\u00e9"));

    QDomElement bristel = document.createElement(QStringLiteral("bristel"));
    root.appendChild(bristel);
    bristel.setAttribute(QStringLiteral("odd"), QStringLiteral("<&>\"'"));
    bristel.setAttribute(QStringLiteral("k"), QString());
    QDomElement cafe = document.createElement(QStringLiteral("caf\u00e9"));
    cafe.setAttribute(QStringLiteral("name"), QStringLiteral("Caff\u00e8"));
    bristel.appendChild(cafe);
    bristel.appendChild(document.createComment(QStringLiteral("not kept")));
    bristel.appendChild(document.createElement(QStringLiteral("empty")));

    QDomElement other = document.createElement(QStringLiteral("other"));
    other.setAttribute(QStringLiteral("x"), QStringLiteral("1"));
    root.appendChild(other);
}

class ConfigSerialiserTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_dir.isValid());
        // A configuration of an unknown type loads nothing and leaves an empty document.
        m_config = std::make_unique<Config>(path(QStringLiteral("tree.conf")), QStringLiteral("none"));
        buildOddTree(*m_config, m_config->fileName());
    }

    QString path(const QString &name) const { return m_dir.filePath(name); }

    QTemporaryDir m_dir;
    std::unique_ptr<Config> m_config;
};

const QByteArray expectedText = "top = \"say \"hi\" <b> & c\t\xe9\";\n"
                                "bristel: \n"
                                "{\n"
                                "    k = \"\";\n"
                                "    odd = \"<&>\"'\";\n"
                                "    caf\xe9: \n"
                                "    {\n"
                                "        name = \"Caff\xe8\";\n"
                                "    };\n"
                                "\n"
                                "    empty: \n"
                                "    {\n"
                                "    };\n"
                                "\n"
                                "};\n"
                                "\n";

const QByteArray expectedXml = "top = \"say \"hi\" <b> & c\t\xc3\xa9\";\n"
                               "\n"
                               "<bristel\n"
                               "    k = \"\"\n"
                               "    odd = \"<&>\"'\">\n"
                               "\n"
                               "    <caf\xc3\xa9\n"
                               "        name = \"Caff\xc3\xa8\">\n"
                               "    </caf\xc3\xa9>\n"
                               "\n"
                               "    <empty>\n"
                               "    </empty>\n"
                               "</bristel>\n";

TEST_F(ConfigSerialiserTest, BothFileWritersWriteTheSameTreeInTheirOwnLayouts)
{
    const QString textPath = path(QStringLiteral("out.conf"));
    const QString xmlPath = path(QStringLiteral("out.xml"));
    m_config->buildConfigFile(textPath);
    ASSERT_EQ(m_config->writeStatus(), QFileDevice::NoError);
    m_config->buildConfigXmlFile(xmlPath);
    ASSERT_EQ(m_config->writeStatus(), QFileDevice::NoError);

    EXPECT_EQ(readFile(textPath), expectedText) << visible(readFile(textPath)).toStdString();
    EXPECT_EQ(readFile(xmlPath), expectedXml) << visible(readFile(xmlPath)).toStdString();

    // Again, in the other order: neither writer leaves indentation behind for the other.
    m_config->buildConfigXmlFile(xmlPath);
    m_config->buildConfigFile(textPath);
    EXPECT_EQ(readFile(textPath), expectedText);
    EXPECT_EQ(readFile(xmlPath), expectedXml);
}

TEST_F(ConfigSerialiserTest, TheBlockWritersAndTheSerialiserAgree)
{
    const QDomElement bristel = m_config->document()->documentElement().firstChildElement();
    QString fromWriter;
    QTextStream writerStream(&fromWriter);
    m_config->buildConfigFile(bristel, writerStream);
    writerStream.flush();

    QString fromSerialiser;
    QTextStream serialiserStream(&fromSerialiser);
    QString indentation;
    ConfigSerialiser(ConfigSerialiser::Layout::Text, serialiserStream, indentation).writeTree(bristel);
    serialiserStream.flush();

    EXPECT_EQ(fromWriter, fromSerialiser);
    EXPECT_EQ(fromWriter.toLatin1(), expectedText.mid(expectedText.indexOf("bristel: ")));
    EXPECT_TRUE(indentation.isEmpty());
}

TEST_F(ConfigSerialiserTest, TheListingShowsEveryBlockWithoutIndentation)
{
    const QString expected = m_config->fileName() + QStringLiteral("\n"
                                                                   "top = say \"hi\" <b> & c\t\u00e9\n"
                                                                   "bristel\n"
                                                                   "k = \n"
                                                                   "odd = <&>\"'\n"
                                                                   "caf\u00e9\n"
                                                                   "name = Caff\u00e8\n"
                                                                   "empty\n"
                                                                   "other\n"
                                                                   "x = 1\n");
    EXPECT_EQ(m_config->configTreeText(), expected);
    const QByteArray printed = captureStdout([&] { m_config->printConfigTree(); });
    EXPECT_EQ(printed, QByteArray("Tree \n") + expected.toLocal8Bit());
}

TEST_F(ConfigSerialiserTest, WhatTheTextWriterWritesReadsBackAsTheSameValues)
{
    const QString textPath = path(QStringLiteral("back.conf"));
    m_config->buildConfigFile(textPath);
    const Config reread(textPath, QStringLiteral("cfg"));
    // Quotes are lost on reading; everything else comes back.
    EXPECT_EQ(reread.lookup(QStringLiteral("bristel.caf\u00e9.name")), QStringLiteral("Caff\u00e8"));
    EXPECT_EQ(reread.lookup(QStringLiteral("bristel.odd")), QStringLiteral("<&>'"));
    EXPECT_EQ(reread.lookup(QStringLiteral("bristel.k")), QString());
    EXPECT_EQ(reread.document()->documentElement().attribute(QStringLiteral("top")),
              QStringLiteral("say hi <b> & c\t\u00e9"));
    EXPECT_TRUE(reread.document()->documentElement().firstChildElement(QStringLiteral("other")).isNull());
}

} // namespace
