#pragma once

#include <string>
#include <vector>

#include "support/KVTarvel.h"
#include "support/Tarvel.h"

namespace test {

/// Receives what the error services say, until the end of the scope.
class Messages {
  public:
    struct Message {
        kv::Service service;
        std::string texte;
        bool operator==(const Message&) const = default;
    };

    Messages() { kv::RedirigeMessages(&Recoit, this); }
    ~Messages() { kv::RedirigeMessages(nullptr, nullptr); }
    Messages(const Messages&) = delete;
    Messages& operator=(const Messages&) = delete;

    const std::vector<Message>& Recus() const { return m_recus; }

  private:
    static void Recoit(kv::Service service, const char16_t* message, void* contexte) {
        static_cast<Messages*>(contexte)->m_recus.push_back({service, kv::VersUtf8(message)});
    }
    std::vector<Message> m_recus;
};

}  // namespace test
