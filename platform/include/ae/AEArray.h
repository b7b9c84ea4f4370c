// The runtime's growable array.
//
// Storage comes from the kernel allocator (AEMemory.h). Growth: from capacity 0 the new capacity
// is exactly the request; otherwise it is the next multiple of twice the old capacity strictly
// above the request (capacity 4, request 8 gives 16). New slots are zero-filled. Plain element
// types (trivially copyable, such as method-table entries) are moved as one block; other types
// are move-constructed one by one and the old ones destroyed.
#ifndef AE_AEARRAY_H
#define AE_AEARRAY_H

#include <cstdint>
#include <cstring>
#include <new>
#include <type_traits>
#include <utility>

#include "AEMemory.h"

template <class T>
class AEArray {
public:
    AEArray() = default;
    ~AEArray() { Clear(); }
    AEArray(const AEArray&) = delete;
    AEArray& operator=(const AEArray&) = delete;

    uint32_t GetCount() const { return m_Count; }
    uint32_t GetCapacity() const { return m_Capacity; }
    T* GetData() { return m_Data; }
    const T* GetData() const { return m_Data; }

    // An index past the end is reported and reads (or writes) a spare, value-initialised
    // element instead of memory outside the array, since the program goes on after the report.
    T& operator[](uint32_t index) {
        if (index < m_Count)
            return m_Data[index];
        AE_ASSERT(index < m_Count);
        return Spare();
    }
    const T& operator[](uint32_t index) const {
        if (index < m_Count)
            return m_Data[index];
        AE_ASSERT(index < m_Count);
        return Spare();
    }

    // The capacity that a request for `requested` slots grows to from `capacity`.
    static uint32_t GrownCapacity(uint32_t capacity, uint32_t requested) {
        if (requested <= capacity)
            return capacity;
        if (capacity == 0)
            return requested;
        uint64_t twice = 2ull * capacity;
        uint64_t grown = twice * (1 + requested / twice);
        return grown > UINT32_MAX ? UINT32_MAX : static_cast<uint32_t>(grown);
    }

    // Makes room for `requested` elements; false (nothing changed) when memory runs out.
    bool Reserve(uint32_t requested) {
        if (requested <= m_Capacity)
            return true;
        uint32_t capacity = GrownCapacity(m_Capacity, requested);
        if (capacity < requested || capacity > SIZE_MAX / sizeof(T))
            return false;
        T* data = static_cast<T*>(ae::AEMalloc(size_t(capacity) * sizeof(T)));
        if (!data) {
            AE_ASSERT(data != nullptr);
            return false;
        }
        if constexpr (kNeedsConstruction) {
            for (uint32_t i = 0; i < m_Count; ++i) {
                new (data + i) T(std::move(m_Data[i]));
                m_Data[i].~T();
            }
        } else if (m_Count) {
            std::memcpy(static_cast<void*>(data), static_cast<const void*>(m_Data),
                        m_Count * sizeof(T));
        }
        std::memset(static_cast<void*>(data + m_Count), 0, size_t(capacity - m_Count) * sizeof(T));
        ae::AEFree(m_Data);
        m_Data = data;
        m_Capacity = capacity;
        return true;
    }

    bool Append(const T& value) { return Insert(m_Count, value); }
    bool Append(T&& value) { return Insert(m_Count, std::move(value)); }

    // Inserts before `index` (index == count appends); the tail moves up by one.
    bool Insert(uint32_t index, T value) {
        if (index > m_Count) {
            AE_ASSERT(index <= m_Count);
            return false;
        }
        if (m_Count == UINT32_MAX || !Reserve(m_Count + 1))
            return false;
        if constexpr (kNeedsConstruction) {
            if (index == m_Count) {
                new (m_Data + m_Count) T(std::move(value));
            } else {
                new (m_Data + m_Count) T(std::move(m_Data[m_Count - 1]));
                for (uint32_t i = m_Count - 1; i > index; --i)
                    m_Data[i] = std::move(m_Data[i - 1]);
                m_Data[index] = std::move(value);
            }
        } else {
            std::memmove(static_cast<void*>(m_Data + index + 1),
                         static_cast<const void*>(m_Data + index), (m_Count - index) * sizeof(T));
            std::memcpy(static_cast<void*>(m_Data + index), static_cast<const void*>(&value),
                        sizeof(T));
        }
        ++m_Count;
        return true;
    }

    // Destroys the elements and frees the storage.
    void Clear() {
        if constexpr (kNeedsConstruction) {
            for (uint32_t i = 0; i < m_Count; ++i)
                m_Data[i].~T();
        }
        ae::AEFree(m_Data);
        m_Data = nullptr;
        m_Count = m_Capacity = 0;
    }

private:
    static T& Spare() {
        static thread_local T spare{};
        spare = T{};
        return spare;
    }

    static constexpr bool kNeedsConstruction = !std::is_trivially_copyable<T>::value;

    uint32_t m_Count = 0;
    uint32_t m_Capacity = 0;
    T* m_Data = nullptr;
};

#endif  // AE_AEARRAY_H
