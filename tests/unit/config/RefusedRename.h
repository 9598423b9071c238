#ifndef BRISTEL_TESTS_REFUSEDRENAME_H
#define BRISTEL_TESTS_REFUSEDRENAME_H

/*
 * Makes the last step of a save fail: while a RefusedRename is alive, rename(2) as the
 * program calls it (this test program defines rename(), which the C library's own then stands
 * behind) fails with EIO, as on a disk that gives up between the write and the rename.
 * Everything else about the save runs for real.
 */
class RefusedRename
{
public:
    RefusedRename();
    ~RefusedRename();
    RefusedRename(const RefusedRename &) = delete;
    RefusedRename &operator=(const RefusedRename &) = delete;

    // How many renames were refused so far.
    int refused() const;
};

#endif
