// A fresh temporary folder for one test, removed with everything in it afterwards.
#ifndef LM_TESTS_TEMPDIR_H
#define LM_TESTS_TEMPDIR_H

#include <cstdlib>
#include <string>

class TempDir {
public:
    TempDir() {
        char templ[] = "/tmp/lmtestXXXXXX";
        const char* made = mkdtemp(templ);
        m_Path = made != nullptr ? made : "/tmp";
    }
    ~TempDir() { (void)std::system(("rm -rf '" + m_Path + "'").c_str()); }
    const std::string& path() const { return m_Path; }
    std::string operator/(const std::string& name) const { return m_Path + "/" + name; }

private:
    std::string m_Path;
};

#endif  // LM_TESTS_TEMPDIR_H
