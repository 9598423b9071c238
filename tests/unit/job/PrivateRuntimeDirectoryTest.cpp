// The runtime folder a process without a login of its own gets for the toolkit's GUI layer.

#include "job/PrivateRuntimeDirectory.h"

#include <QFileInfo>

#include <gtest/gtest.h>

#include <unistd.h>

namespace {

// Sets or clears XDG_RUNTIME_DIR for one test and puts the caller's value back afterwards.
class RuntimeVariable
{
public:
    explicit RuntimeVariable(const QByteArray &value)
        : m_wasSet(qEnvironmentVariableIsSet("XDG_RUNTIME_DIR")), m_old(qgetenv("XDG_RUNTIME_DIR"))
    {
        if (value.isNull())
            qunsetenv("XDG_RUNTIME_DIR");
        else
            qputenv("XDG_RUNTIME_DIR", value);
    }
    ~RuntimeVariable()
    {
        if (m_wasSet)
            qputenv("XDG_RUNTIME_DIR", m_old);
        else
            qunsetenv("XDG_RUNTIME_DIR");
    }
    Q_DISABLE_COPY_MOVE(RuntimeVariable)

private:
    bool m_wasSet;
    QByteArray m_old;
};

TEST(PrivateRuntimeDirectory, AProcessWithoutOneGetsAFolderOnlyItsOwnerMayEnter)
{
    const RuntimeVariable none{QByteArray()};
    QString path;
    {
        const PrivateRuntimeDirectory directory;
        path = directory.path();
        ASSERT_FALSE(path.isEmpty());
        EXPECT_EQ(qEnvironmentVariable("XDG_RUNTIME_DIR"), path);
        const QFileInfo info(path);
        EXPECT_TRUE(info.isDir());
        EXPECT_EQ(info.ownerId(), uint(geteuid()));
        // Exactly what the toolkit demands of a runtime folder; it complains of anything else.
        EXPECT_EQ(info.permissions(), QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                          QFileDevice::ExeOwner | QFileDevice::ReadUser |
                                          QFileDevice::WriteUser | QFileDevice::ExeUser);
    }
    EXPECT_FALSE(QFileInfo::exists(path));
    EXPECT_FALSE(qEnvironmentVariableIsSet("XDG_RUNTIME_DIR"));
}

TEST(PrivateRuntimeDirectory, TheUsersOwnFolderIsLeftAlone)
{
    const RuntimeVariable userFolder("/run/user/4242");
    {
        const PrivateRuntimeDirectory directory;
        EXPECT_TRUE(directory.path().isEmpty());
        EXPECT_EQ(qgetenv("XDG_RUNTIME_DIR"), QByteArray("/run/user/4242"));
    }
    EXPECT_EQ(qgetenv("XDG_RUNTIME_DIR"), QByteArray("/run/user/4242"));
}

} // namespace
