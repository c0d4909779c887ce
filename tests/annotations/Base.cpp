// What clang has to say of locks that are not held. Never built: the compiler holds its warnings against the comments.
#include "base/Mutex.h"

namespace zm::test {

class Account {
public:
    int balance() {
        MutexLock lock(m_mutex);
        return m_balance;
    }
    int balanceUnlocked() {
        // expected-warning@+1 {{reading variable 'm_balance' requires holding mutex 'm_mutex'}}
        return m_balance;
    }
    void setUnlocked(int balance) {
        // expected-warning@+1 {{writing variable 'm_balance' requires holding mutex 'm_mutex' exclusively}}
        m_balance = balance;
    }
    void setUnderAnother(int balance) {
        MutexLock lock(m_other);
        // expected-warning@+1 {{writing variable 'm_balance' requires holding mutex 'm_mutex' exclusively}}
        m_balance = balance;
    }
    void setAfterUnlock(int balance) {
        MutexLock lock(m_mutex);
        lock.unlock();
        // expected-warning@+1 {{writing variable 'm_balance' requires holding mutex 'm_mutex' exclusively}}
        m_balance = balance;
        lock.lock();
        m_balance = balance;
    }
    void setWhenChanged(int balance) {
        MutexLock lock(m_mutex);
        while (m_balance == 0) {
            m_changed.wait(lock);
        }
        m_balance = balance;
    }
    void add(int amount) ZM_REQUIRES(m_mutex) { m_balance += amount; }
    void addLocked(int amount) {
        MutexLock lock(m_mutex);
        add(amount);
    }
    void addUnlocked(int amount) {
        // expected-warning@+1 {{calling function 'add' requires holding mutex 'm_mutex' exclusively}}
        add(amount);
    }
    void lockTwice() {
        MutexLock lock(m_mutex); // expected-note {{mutex acquired here}}
        // expected-warning@+1 {{acquiring mutex 'm_mutex' that is already held}}
        MutexLock again(m_mutex);
    }

private:
    Mutex m_mutex;
    Mutex m_other;
    Condition m_changed;
    int m_balance ZM_GUARDED_BY(m_mutex) = 0;
};

} // namespace zm::test
