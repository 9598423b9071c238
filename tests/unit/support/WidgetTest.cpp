#include "support/HLibrary.h"

#include "TestSupport.h"

#include <QApplication>
#include <QComboBox>
#include <QMessageBox>
#include <QTimer>

#include <gtest/gtest.h>

#include <memory>

namespace {

// Each test builds its own application, so that tests without one stay console programs.
class WidgetTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        application = std::make_unique<QApplication>(argc, argv);
    }
    void TearDown() override { application.reset(); }

    int argc = 1;
    char name[13] = "support_test";
    char *argv[2] = {name, nullptr};
    std::unique_ptr<QApplication> application;
};

TEST_F(WidgetTest, ComboBoxIndexOfMatchesExactly)
{
    QComboBox box;
    box.addItems(
        {QStringLiteral("Cash"), QStringLiteral("Card"), QStringLiteral("Cash"), QStringLiteral("cheque")});
    EXPECT_EQ(HLibrary::comboBoxIndexOf(&box, QStringLiteral("Cash")), 0);
    EXPECT_EQ(HLibrary::comboBoxIndexOf(&box, QStringLiteral("Card")), 1);
    EXPECT_EQ(HLibrary::comboBoxIndexOf(&box, QStringLiteral("cheque")), 3);
    EXPECT_EQ(HLibrary::comboBoxIndexOf(&box, QStringLiteral("cash")), -1);
    EXPECT_EQ(HLibrary::comboBoxIndexOf(&box, QStringLiteral("Cas")), -1);
    EXPECT_EQ(HLibrary::comboBoxIndexOf(&box, QString()), -1);
}

TEST_F(WidgetTest, ComboBoxIndexOfEmptyBoxIsMinusOne)
{
    QComboBox box;
    EXPECT_EQ(HLibrary::comboBoxIndexOf(&box, QStringLiteral("x")), -1);
}

TEST_F(WidgetTest, PromptIsAModalMessageBox)
{
    QString title;
    QString text;
    int boxes = 0;
    // Answers the box as soon as it is up, as the operator would.
    QTimer timer;
    timer.setInterval(10);
    QObject::connect(&timer, &QTimer::timeout, [&] {
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            auto *box = qobject_cast<QMessageBox *>(widget);
            if (box && box->isVisible()) {
                ++boxes;
                title = box->windowTitle();
                text = box->text();
                EXPECT_TRUE(box->isModal());
                EXPECT_EQ(box->buttons().size(), 1);
                box->accept();
            }
        }
    });
    timer.start();
    HLibrary::newSheetPrompt();
    timer.stop();
    EXPECT_EQ(boxes, 1);
    EXPECT_EQ(title, QStringLiteral("PaperWindow"));
    EXPECT_EQ(text, QStringLiteral("Insert a new sheet"));
}

} // namespace
