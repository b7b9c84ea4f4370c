// The last few cached answers of a client, kept decoded.
//
// A cached answer is stored as compressed XML; decoding it (inflate, XML parse) costs far more
// than the database read. The memo remembers, for the most recently read entries, the stored
// bytes and a private deep copy of the decoded answer. A later read of the same entry still asks
// the database, so the database stays the only authority (entries dropped, replaced or changed by
// another process are never answered from memory), but when the bytes are the ones remembered
// the decoded copy is used instead of decoding them again.
#ifndef LM_ANSWER_MEMO_H
#define LM_ANSWER_MEMO_H

#include <cstdint>
#include <list>
#include <memory>

#include "LMString.h"

class LMAnswerMemo {
public:
    // Entries kept; about 100 to 200 KB each for a page of 50 titles.
    static constexpr size_t kCapacity = 8;

    // The decoded answer remembered for (table, name, key) when `value` is exactly the stored
    // text it was decoded from and it has the type asked for; null otherwise. A found entry
    // becomes the most recent one.
    template <class Wire>
    const Wire* Find(uint32_t table, const LMString& name, const LMString& key,
                     const LMString& value) {
        for (auto it = m_Entries.begin(); it != m_Entries.end(); ++it) {
            if (it->table == table && it->name == name && it->key == key) {
                auto* held = dynamic_cast<const Held<Wire>*>(it->decoded.get());
                if (held == nullptr || !(it->value == value)) {
                    return nullptr;
                }
                m_Entries.splice(m_Entries.begin(), m_Entries, it);
                return held->answer;
            }
        }
        return nullptr;
    }

    // Remembers a deep copy of `answer`, decoded from `value`, for (table, name, key), replacing
    // what was remembered for it and dropping the least recent entry when full.
    template <class Wire>
    void Keep(uint32_t table, const LMString& name, const LMString& key, const LMString& value,
              const Wire& answer) {
        for (auto it = m_Entries.begin(); it != m_Entries.end(); ++it) {
            if (it->table == table && it->name == name && it->key == key) {
                m_Entries.erase(it);
                break;
            }
        }
        if (m_Entries.size() >= kCapacity) {
            m_Entries.pop_back();
        }
        m_Entries.push_front(Entry{table, name, key, value, std::make_unique<Held<Wire>>(answer)});
    }

    void Clear() { m_Entries.clear(); }
    size_t Size() const { return m_Entries.size(); }

private:
    struct Decoded {
        virtual ~Decoded() = default;
    };

    // A deep copy outside any toolkit context (plain new/malloc), deleted with the entry.
    template <class Wire>
    struct Held : Decoded {
        explicit Held(const Wire& original) : answer(original.soap_dup()) {}
        ~Held() override {
            if (answer != nullptr) {
                answer->soap_del();
                delete answer;
            }
        }
        Held(const Held&) = delete;
        Held& operator=(const Held&) = delete;
        Wire* answer;
    };

    struct Entry {
        uint32_t table;
        LMString name;
        LMString key;
        LMString value;
        std::unique_ptr<Decoded> decoded;
    };

    std::list<Entry> m_Entries;
};

#endif  // LM_ANSWER_MEMO_H
