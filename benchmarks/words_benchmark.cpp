// Words of all amounts of a file, one a line, by CAmount and by the extended style; prints the
// seconds of each, and the number of characters so that nothing can be left out.

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "toolkit/CAmount.h"
#include "toolkit/amount_in_words.h"

namespace {

template <typename Word>
void Time(const char* name, const std::vector<double>& amounts, Word word) {
  std::size_t characters = 0;
  const auto start = std::chrono::steady_clock::now();
  for (const double amount : amounts) characters += word(amount).size();
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
  std::printf("%s %.6f %zu\n", name, seconds.count(), characters);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: words_benchmark AMOUNTS\n", stderr);
    return 2;
  }
  std::vector<double> amounts;
  std::ifstream file(argv[1]);
  for (double amount = 0; file >> amount;) amounts.push_back(amount);
  Time("CAmount", amounts, [](double amount) { return kel::CAmount().Words(amount); });
  Time("Extended", amounts,
       [](double amount) { return kel::AmountInWords(amount, kel::Style::Extended); });
  return amounts.empty() ? 1 : 0;
}
