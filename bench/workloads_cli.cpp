// Whole programs doing the same job, as a user scripts it: ordix-cli runs a
// script that reads its inputs from decimal files, computes and prints; on
// GMP's side this benchmark starts itself again (--gmp-script NAME FILES) to
// read the same files, compute with GMP and print. Both are timed from the
// start of the program to its exit, start-up and loading included; the input
// files are written beforehand, untimed. The answers are compared by a hash
// of the printed text without line breaks.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include "bench/bench_harness.h"

std::string gCliPath = ORDIX_CLI_PATH;

namespace {

struct ScriptRow {
    const char* name;
    const char* what;
    double target;
    std::function<Texts()> inputs;
    std::vector<std::string> lines;  // $0, $1 … stand for the input files
    GmpOp gmp;                       // one output, from the inputs
    int base = 10;                   // of GMP's printed answer
};

std::string Substitute(std::string line, const std::vector<std::string>& files) {
    for (size_t i = files.size(); i-- > 0;) {
        const std::string key = "$" + std::to_string(i);
        for (size_t at; (at = line.find(key)) != std::string::npos;)
            line.replace(at, key.size(), files[i]);
    }
    return line;
}

bool WriteFile(const std::string& path, const std::string& text) {
    FILE* f = std::fopen(path.c_str(), "w");
    if (!f) return false;
    const bool ok = std::fwrite(text.data(), 1, text.size(), f) == text.size();
    return std::fclose(f) == 0 && ok;
}

// A folder of input files (and a script), removed when done.
struct Inputs {
    char dir[32] = "/tmp/ordix-bench-XXXXXX";
    std::vector<std::string> files;
    bool ok = false;
    explicit Inputs(const Texts& texts) {
        if (!mkdtemp(dir)) return;
        ok = true;
        for (size_t i = 0; i < texts.size(); ++i) {
            files.push_back(std::string(dir) + "/in" + std::to_string(i) + ".txt");
            ok = ok && WriteFile(files.back(), texts[i] + "\n");
        }
    }
    std::string Add(const char* name, const std::string& text) {
        files.push_back(std::string(dir) + "/" + name);
        ok = ok && WriteFile(files.back(), text);
        return files.back();
    }
    ~Inputs() {
        for (const std::string& f : files) std::remove(f.c_str());
        rmdir(dir);
    }
};

// Runs argv, timing it from fork to exit. Output lines starting with '#'
// carry "#compute SECONDS"; the rest is hashed without line breaks.
Report RunProgram(const std::vector<std::string>& args) {
    Report r;
    r.code = 126;
    int fds[2];
    if (pipe(fds) != 0) return r;
    std::vector<char*> argv;
    for (const std::string& a : args) argv.push_back(const_cast<char*>(a.c_str()));
    argv.push_back(nullptr);
    std::fflush(stdout);
    const auto t0 = Clock::now();
    const pid_t pid = fork();
    if (pid == 0) {
        dup2(fds[1], 1);
        close(fds[0]);
        close(fds[1]);
        execv(argv[0], argv.data());
        _exit(127);
    }
    close(fds[1]);
    std::string out;
    char buf[1 << 16];
    for (ssize_t n; (n = read(fds[0], buf, sizeof buf)) > 0;) out.append(buf, size_t(n));
    close(fds[0]);
    int status = 0;
    struct rusage ru {};
    wait4(pid, &status, 0, &ru);
    r.total = Seconds(t0, Clock::now());
    r.childPeakKb = ru.ru_maxrss;
    r.code = WIFEXITED(status) ? WEXITSTATUS(status) : 128;
    r.hash = kFnvStart;
    std::istringstream lines(out);
    for (std::string line; std::getline(lines, line);) {
        if (line.rfind("#compute ", 0) == 0)
            r.compute = std::atof(line.c_str() + 9);
        else
            r.hash = Fnv(line.data(), line.size(), r.hash);
    }
    return r;
}

const std::vector<ScriptRow>& Rows() {
    static const std::vector<ScriptRow> rows = [] {
        std::vector<ScriptRow> v;
        const int32_t fibN = Scaled(200000);
        v.push_back(
            {"cli-fib",
             "F(200000) by recursion steps",
             2.0,
             [] { return Texts{}; },
             {"A=0", "B=1", "recur B=A+B", "recur A=B", "steps " + std::to_string(fibN - 1), "B"},
             [=](mpz_ptr const* out, mpz_srcptr const*) {
                 mpz_t a;
                 mpz_init_set_ui(a, 0);
                 mpz_set_ui(out[0], 1);
                 for (int32_t i = 1; i < fibN; ++i) {
                     mpz_add(a, a, out[0]);
                     mpz_swap(a, out[0]);
                 }
                 mpz_clear(a);
                 return 0;
             }});

        // In modulus mode every result is reduced, the exponent too, so
        // GMP computes 3^(10^1000 mod m) mod m.
        const int32_t zeros = Scaled(1000);
        const std::string power = "3^(10^" + std::to_string(zeros) + ")";
        auto powmod = [&](const char* name, const char* what, double target, int32_t digits) {
            return ScriptRow{name,
                             what,
                             target,
                             [=] { return Texts{Digits(digits, 9)}; },
                             {"read M $0", "modulus M", power},
                             [=](mpz_ptr const* out, mpz_srcptr const* in) {
                                 mpz_t e;
                                 mpz_init_set_ui(e, 10);
                                 mpz_powm_ui(e, e, static_cast<unsigned long>(zeros), in[0]);
                                 mpz_set_ui(out[0], 3);
                                 mpz_powm(out[0], out[0], e, in[0]);
                                 mpz_clear(e);
                                 return 0;
                             }};
        };
        v.push_back(powmod("cli-powmod", "3^(10^1000), modulus mode, a 1000-digit modulus", 1.0,
                           Scaled(1000)));
        v.push_back(powmod("cli-powmod20k", "3^(10^1000), modulus mode, a 20000-digit modulus", 1.2,
                           Scaled(20000)));

        const int32_t binN = Scaled(1000000);
        v.push_back({"cli-binomial",
                     "1000000[C]500000",
                     1.0,
                     [] { return Texts{}; },
                     {std::to_string(binN) + "[C]" + std::to_string(binN / 2)},
                     [=](mpz_ptr const* out, mpz_srcptr const*) {
                         mpz_bin_uiui(out[0], unsigned(binN), unsigned(binN / 2));
                         return 0;
                     }});

        const int32_t gcdDigits = Scaled(200000);
        v.push_back({"cli-gcd",
                     "[GCD] of two 200000-digit numbers",
                     1.5,
                     [=] { return GcdInputs(gcdDigits); },
                     {"read A $0", "read B $1", "[GCD](A,B)"},
                     [](mpz_ptr const* out, mpz_srcptr const* in) {
                         mpz_gcd(out[0], in[0], in[1]);
                         return 0;
                     }});

        const int32_t cbrtDigits = Scaled(4000000);
        v.push_back({"cli-cbrt",
                     "[CURT] of 4M digits",
                     1.5,
                     [=] { return Texts{Digits(cbrtDigits, 5)}; },
                     {"read A $0", "[CURT](A)"},
                     [](mpz_ptr const* out, mpz_srcptr const* in) {
                         mpz_root(out[0], in[0], 3);
                         return 0;
                     }});

        const int32_t hexDigits = Scaled(300000);
        v.push_back({"cli-hex",
                     "a 300000-digit label printed in base 16",
                     1.0,
                     [=] { return Texts{Digits(hexDigits, 10)}; },
                     {"read A $0", "convert 10 16 @A"},
                     [](mpz_ptr const* out, mpz_srcptr const* in) {
                         mpz_set(out[0], in[0]);
                         return 0;
                     },
                     16});
        return v;
    }();
    return rows;
}

std::string SelfPath() {
    char buf[4096];
    const ssize_t n = readlink("/proc/self/exe", buf, sizeof buf - 1);
    return n > 0 ? std::string(buf, size_t(n)) : std::string("ordix_bench");
}

}  // namespace

std::vector<Workload> CliWorkloads() {
    std::vector<Workload> w;
    for (const ScriptRow& row : Rows()) {
        Workload x{row.name, row.what, row.target, {}, {}};
        x.ours = [row] {
            Inputs in(row.inputs());
            std::string script;
            for (const std::string& line : row.lines) script += Substitute(line, in.files) + "\n";
            const std::string path = in.Add("run.ordix", script);
            Report r;
            if (in.ok) r = RunProgram({gCliPath, path});
            return r;
        };
        x.gmp = [row] {
            Inputs in(row.inputs());
            std::vector<std::string> args{SelfPath(), "--scale", std::to_string(gScale),
                                          "--gmp-script", row.name};
            for (const std::string& f : in.files) args.push_back(f);
            Report r;
            if (in.ok) r = RunProgram(args);
            return r;
        };
        w.push_back(x);
    }
    return w;
}

int RunGmpScript(const char* name, const std::vector<std::string>& files) {
    for (const ScriptRow& row : Rows()) {
        if (std::string(name) != row.name) continue;
        const size_t count = files.size() + 1;
        std::vector<__mpz_struct> values(count);
        for (auto& v : values) mpz_init(&v);
        std::vector<mpz_srcptr> in;
        for (size_t i = 0; i < files.size(); ++i) {
            std::ifstream f(files[i]);
            std::string text;
            std::getline(f, text);
            if (mpz_set_str(&values[i + 1], text.c_str(), 10) != 0) return 1;
            in.push_back(&values[i + 1]);
        }
        mpz_ptr out = &values[0];
        const auto t0 = Clock::now();
        const int code = row.gmp(&out, in.data());
        const double compute = Seconds(t0, Clock::now());
        std::vector<char> buf(mpz_sizeinbase(out, row.base) + 3);
        mpz_get_str(buf.data(), row.base, out);
        for (char& c : buf) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        std::printf("#compute %.6f\n%s\n", compute, buf.data());
        for (auto& v : values) mpz_clear(&v);
        return code;
    }
    return 2;
}
