#include "EscPosCommandSamples.h"

namespace {

using P = EscPosParameters;

template <size_t N> QByteArray bytes(const char (&literal)[N])
{
    return QByteArray(literal, N - 1);
}

// The parameters after the prefix.
std::vector<QByteArray> parameterSamples(const EscPosCommandEntry &entry)
{
    switch (entry.parameters) {
    case P::Fixed:
        return {QByteArray(entry.count, '0')};
    case P::CountedLowHigh:
        return {QByteArray(entry.count, '1') + bytes("\x03\x00-0@")};
    case P::CountedFourBytes:
        return {bytes("\x05\x00\x00\x00"
                      "0p-0@")};
    case P::AscendingList:
        return {bytes("0@P\x00")};
    case P::BarcodeData:
        return {bytes("\x04"
                      "A-00@\x00"),
                bytes("\x49\x05{B-0@"), bytes("\x07")};
    case P::BitImage:
        return {bytes("\x21\x02\x00-00@00"), bytes("\x00\x03\x00-0@")};
    case P::RasterImage:
    case P::VariableImage:
        return {bytes("0\x01\x00\x02\x00-@")};
    case P::Cut:
        return {bytes("B0"), bytes("1"), bytes("h-")};
    case P::RealTimeStatus:
        return {bytes("\x01"), bytes("\x07\x01")};
    case P::RealTimeRequest:
        return {bytes("\x01\x00\x01"), bytes("\x03\x01\x02\x03\x04\x05"),
                bytes("\x08\x01\x03\x14\x01\x06\x02\x08")};
    case P::UserCharacters:
        return {bytes("\x03"
                      "AB\x02-0@-0@\x01"
                      "0@-")};
    case P::DownloadedImage:
        return {bytes("\x01\x01-0@-0@-0")};
    case P::NvImages:
        return {bytes("\x01\x01\x00\x01\x00-0@-0@-0")};
    case P::NvMemory:
        return {bytes("1\x00\x00\x00\x00\x00\x03\x00-0@"), bytes("2\x00\x00\x00\x00\x00\x03\x00")};
    case P::WindowsBitmap:
        return {bytes("0S0\x01\x01"
                      "BM\x11\x00\x00\x00-0@-0@-0@-0"),
                bytes("0C0AB\x01\x01"
                      "BM\x12\x00\x00\x00-0@-0@-0@-0@")};
    case P::Counter:
        return {bytes("0-0"), bytes("1-0@-0@"), bytes("2-0"), bytes(";1;2;3;4;5;")};
    }
    return {};
}

} // namespace

std::vector<QByteArray> escPosCommandSamples(const EscPosCommandEntry &entry)
{
    std::vector<QByteArray> samples;
    const QByteArray prefix(entry.prefix.data(), qsizetype(entry.prefix.size()));
    for (const QByteArray &parameters : parameterSamples(entry))
        samples.push_back(prefix + parameters);
    return samples;
}
