// The encoder's text: DEL (0x7F) sits right after the last printable ASCII character, where a
// range check one off would let it through to the printer; it is a control character and
// prints as '?' like the others.

#include "devices/escpos/EscPosCodePage.h"
#include "devices/escpos/EscPosEncoder.h"

#include <QBuffer>

#include <gtest/gtest.h>

namespace {

QByteArray encodedText(QStringView text)
{
    QBuffer device;
    device.open(QIODevice::WriteOnly);
    {
        EscPosEncoder encoder(&device, EscPosCodePage::byName(u"PC858"));
        encoder.text(text);
        EXPECT_TRUE(encoder.flush());
    }
    return device.data();
}

TEST(EscPosEncoderText, DeletePrintsAsAQuestionMark)
{
    const QByteArray bytes = encodedText(u"Pizza\u007f Margherita\u007f~");
    EXPECT_EQ(bytes, QByteArray("Pizza? Margherita?~"));
    EXPECT_FALSE(bytes.contains('\x7f'));
}

TEST(EscPosEncoderText, TheCharactersAroundDeleteStayAsTheyAre)
{
    EXPECT_EQ(encodedText(u" ~"), QByteArray(" ~"));
    EXPECT_EQ(encodedText(u"\u0080\u001f"), QByteArray("??"));
}

} // namespace
