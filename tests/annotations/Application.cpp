// The same of the application's own locks.
#include "ZMModel/Mutex.h"

class Account {
public:
    int GetBalance() {
        MutexGuard guard(m_mutex);
        return m_nBalance;
    }
    int GetUnlocked() {
        // expected-warning@+1 {{reading variable 'm_nBalance' requires holding mutex 'm_mutex'}}
        return m_nBalance;
    }
    void SetUnlocked(int nBalance) {
        // expected-warning@+1 {{writing variable 'm_nBalance' requires holding mutex 'm_mutex' exclusively}}
        m_nBalance = nBalance;
    }
    void Add(int nAmount) NEEDS_LOCK(m_mutex) { m_nBalance += nAmount; }
    void AddUnlocked(int nAmount) {
        // expected-warning@+1 {{calling function 'Add' requires holding mutex 'm_mutex' exclusively}}
        Add(nAmount);
    }
    void Reset() LOCK_UNCHECKED { m_nBalance = 0; }

private:
    Mutex m_mutex;
    int m_nBalance GUARDED_BY(m_mutex) = 0;
};
