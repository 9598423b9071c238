#ifndef BRISTEL_CONFIG_SYNCSINGLETON_H
#define BRISTEL_CONFIG_SYNCSINGLETON_H

#include "bristel_config_export.h"

#include <QMutex>

#include <atomic>

/*
 * Process-wide single instance of T, created on first use and deleted at exit.
 *
 * The pointer is tested without a lock so that the common path stays lock-free; creation
 * happens under a per-type mutex with a second test, so concurrent first uses build one
 * instance.  The destroyer, a static object, deletes the instance when the program ends.
 *
 * The template is exported so that a program and the shared libraries it loads agree on one
 * instance: the static members below are then unique symbols, which the dynamic loader merges
 * across every library of the process instead of giving each library a hidden copy.
 */
template <class T> class BRISTEL_CONFIG_EXPORT SyncSingleton
{
public:
    template <class U> class Destroyer
    {
    public:
        constexpr Destroyer() = default;
        ~Destroyer() { delete m_instance; }
        Destroyer(const Destroyer &) = delete;
        Destroyer &operator=(const Destroyer &) = delete;

        void setInstance(U *instance) { m_instance = instance; }

    private:
        U *m_instance = nullptr;
    };

    static T *instance()
    {
        T *current = instance_pointer.load(std::memory_order_acquire);
        if (!current) {
            createInstance();
            current = instance_pointer.load(std::memory_order_acquire);
        }
        return current;
    }

    static void createInstance()
    {
        QMutexLocker locker(&instance_mutex);
        if (instance_pointer.load(std::memory_order_relaxed))
            return;
        T *created = new T(); // a throwing constructor frees the memory; the pointer stays null
        instance_destroyer.setInstance(created);
        instance_pointer.store(created, std::memory_order_release);
    }

    // C++17 inline statics: one definition across every translation unit that uses T.
    static inline std::atomic<T *> instance_pointer{nullptr};
    static inline QMutex instance_mutex;
    static inline Destroyer<T> instance_destroyer;
};

#endif
