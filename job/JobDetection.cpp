#include "job/JobDetection.h"

#include <algorithm>

namespace {

bool isXmlSpace(char byte)
{
    return byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n';
}

bool startsLikeXml(QByteArrayView bytes)
{
    if (bytes.startsWith("\xef\xbb\xbf"))
        bytes = bytes.sliced(3);
    for (const char byte : bytes) {
        if (!isXmlSpace(byte))
            return byte == '<';
    }
    return false;
}

// "<method" ended as a start tag's name ends: by white space, '/' or '>'.  A name cut off by
// the end of the bytes looked at counts, as the tag starts within them.
bool holdsMethodTag(QByteArrayView bytes)
{
    constexpr QByteArrayView tag("<method");
    for (qsizetype at = bytes.indexOf(tag); at >= 0; at = bytes.indexOf(tag, at + 1)) {
        const qsizetype after = at + tag.size();
        if (after == bytes.size())
            return true;
        const char next = bytes[after];
        if (isXmlSpace(next) || next == '/' || next == '>')
            return true;
    }
    return false;
}

} // namespace

bool isBristelJob(QByteArrayView start)
{
    const QByteArrayView looked = start.first(std::min(start.size(), bristelJobSniffLength));
    return startsLikeXml(looked) && holdsMethodTag(looked);
}
