#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

namespace test {

/// A temporary directory of the test's own, with KV_TEMP in it; the marker file turns the trace of this program on.
class RepertoireDeTrace {
  public:
    /// suffixe: the end of the directory's name, which need not be Unicode text.
    explicit RepertoireDeTrace(const std::string& suffixe = "") {
        std::string modele = testing::TempDir() + "kv_trace_XXXXXX";
        m_racine = mkdtemp(modele.data()) + suffixe;
        std::filesystem::rename(modele, m_racine);
        if (const char* avant = std::getenv("TMPDIR")) m_avant = avant;
        setenv("TMPDIR", m_racine.c_str(), 1);
        std::filesystem::create_directory(KvTemp());
    }
    ~RepertoireDeTrace() {
        m_avant ? setenv("TMPDIR", m_avant->c_str(), 1) : unsetenv("TMPDIR");
        std::filesystem::remove_all(m_racine);
    }
    RepertoireDeTrace(const RepertoireDeTrace&) = delete;
    RepertoireDeTrace& operator=(const RepertoireDeTrace&) = delete;

    std::filesystem::path KvTemp() const { return m_racine / "KV_TEMP"; }
    std::filesystem::path Marqueur() const { return KvTemp() / "kv_tests.inf"; }
    std::filesystem::path Fichier() const { return KvTemp() / "kv_tests_Calculs.json"; }
    void PoseMarqueur() const { std::ofstream(Marqueur()).flush(); }

    /// The lines of the trace, "hh:nn:ss : " and an indented text each.
    std::vector<std::string> Lignes() const {
        std::ifstream fichier(Fichier());
        std::vector<std::string> lignes;
        for (std::string ligne; std::getline(fichier, ligne);) lignes.push_back(ligne);
        return lignes;
    }

  private:
    std::filesystem::path m_racine;
    std::optional<std::string> m_avant;
};

}  // namespace test
