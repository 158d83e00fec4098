#pragma once

#include <algorithm>
#include <cstring>
#include <exception>
#include <new>
#include <string_view>

#include "Calcul/pCalculN/Loi.h"
#include "interface/kv.h"

// What every function of kv.h does: it answers a status, keeps the message of a failure with its handle, and lets no
// exception out.

namespace kv {

/// The message of a handle's last failure. It has its room from the beginning, so that it can tell that memory is
/// short.
class Message {
  public:
    void Ecrit(std::string_view texte) noexcept {
        std::size_t taille = std::min(texte.size(), sizeof m_texte - 1);
        while (taille < texte.size() && (texte[taille] & 0xC0) == 0x80) --taille;  // whole characters
        m_texte[texte.copy(m_texte, taille)] = 0;
    }
    const char* Texte() const { return m_texte; }
    /// Keeps the message of a failure and answers its status.
    kv_status Refuse(kv_status statut, std::string_view texte) noexcept {
        Ecrit(texte);
        return statut;
    }
    kv_status Refuse(kv_status statut) noexcept { return Refuse(statut, kv_status_text(statut)); }

  private:
    char m_texte[1024] = "";
};

/// Where nobody keeps the message: the functions without a handle.
struct SansMessage {
    kv_status Refuse(kv_status statut, std::string_view = {}) const noexcept { return statut; }
};

/// Runs the body of a function that can fail and answers its status. Nothing else catches.
template <class Message, class Corps>
kv_status Repond(Message&& message, Corps&& corps) noexcept {
    try {
        return corps();
    } catch (const std::bad_alloc&) {
        return message.Refuse(KV_NO_MEMORY);
    } catch (const std::exception& e) {
        return message.Refuse(KV_FAILED, e.what());
    } catch (...) {
        return message.Refuse(KV_FAILED);
    }
}

/// The size of a structure in its first revision: one that has grown says here what it was.
template <class Structure>
inline constexpr std::size_t premiereTaille = sizeof(Structure);

/// Fills a structure of the caller as far as the caller knows it.
template <class Structure>
kv_status Remplit(Structure* vers, Structure valeur) noexcept {
    if (vers->size < premiereTaille<Structure>) return KV_BAD_SIZE;
    valeur.size = std::min(vers->size, sizeof(Structure));
    std::memcpy(vers, &valeur, valeur.size);
    return KV_OK;
}

/// Hands over the ranks found as far as there is room for them.
template <class Rangs>
kv_status RendRangs(const Rangs& rangs, int32_t* vers, int32_t place, int32_t* nombre) noexcept {
    *nombre = static_cast<int32_t>(rangs.size());
    const std::size_t rendus = std::min(rangs.size(), static_cast<std::size_t>(std::max(place, 0)));
    std::transform(rangs.begin(), rangs.begin() + static_cast<std::ptrdiff_t>(rendus), vers,
                   [](auto rang) { return static_cast<int32_t>(rang); });
    return rendus < rangs.size() ? KV_TOO_SMALL : KV_OK;
}

/// Whether a number counts one of n things.
constexpr bool EstRang(int32_t numero, std::size_t n) { return numero >= 0 && static_cast<std::size_t>(numero) < n; }

}  // namespace kv

struct kv_law {
    kv::Loi loi = kv::loi2017;
    kv::Message message;
};
