#include <benchmark/benchmark.h>

#include <array>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "engrspin/EngrFormat.h"
#include "engrspin/EngrNumber.h"

namespace {

using namespace tarvik;

std::vector<Double> Values() {
  std::mt19937_64 random(7);
  std::uniform_real_distribution<Double> mantissa(-10, 10);
  std::uniform_int_distribution<int> power(-12, 11);
  std::vector<Double> arrValues(4096);
  for (Double &dblValue : arrValues) dblValue = mantissa(random) * PowerOfTen(power(random));
  return arrValues;
}

std::vector<std::string> Texts() {
  std::vector<std::string> arrTexts;
  for (const Double dblValue : Values()) {
    Long lngExponent = 0;
    std::string strText;
    FormatMantissa(dblValue, 10, '.', lngExponent, strText);
    arrTexts.push_back(strText + "e-6");
  }
  return arrTexts;
}

void FormatOurs(const std::vector<Double> &arrValues) {
  std::string strText;
  Long lngExponent = 0;
  for (const Double dblValue : arrValues) {
    FormatMantissa(dblValue, 10, '.', lngExponent, strText);
    benchmark::DoNotOptimize(strText.data());
  }
}

void FormatStandard(const std::vector<Double> &arrValues) {
  std::array<char, 32> text;
  for (const Double dblValue : arrValues)
    benchmark::DoNotOptimize(
        std::to_chars(text.data(), text.data() + text.size(), dblValue, std::chars_format::scientific, 9));
}

void ParseOurs(const std::vector<std::string> &arrTexts) {
  const EngrNumber number;
  for (const std::string &strText : arrTexts) benchmark::DoNotOptimize(number.ReadEntry(strText));
}

void ParseStandard(const std::vector<std::string> &arrTexts) {
  for (const std::string &strText : arrTexts) {
    Double dblValue = 0;
    benchmark::DoNotOptimize(std::from_chars(strText.data(), strText.data() + strText.size(), dblValue));
    benchmark::DoNotOptimize(dblValue);
  }
}

template <class Work>
double Best(Work work) {
  double best = 1e9;
  for (int i = 0; i < 100; ++i) {
    const auto start = std::chrono::steady_clock::now();
    work();
    best = std::min(best, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
  }
  return best;
}

void BM_FormatEngr(benchmark::State &state) {
  const auto arrValues = Values();
  for (auto _ : state) FormatOurs(arrValues);
}
void BM_to_chars(benchmark::State &state) {
  const auto arrValues = Values();
  for (auto _ : state) FormatStandard(arrValues);
}
void BM_ReadEntry(benchmark::State &state) {
  const auto arrTexts = Texts();
  for (auto _ : state) ParseOurs(arrTexts);
}
void BM_from_chars(benchmark::State &state) {
  const auto arrTexts = Texts();
  for (auto _ : state) ParseStandard(arrTexts);
}
BENCHMARK(BM_FormatEngr);
BENCHMARK(BM_to_chars);
BENCHMARK(BM_ReadEntry);
BENCHMARK(BM_from_chars);

}  // namespace

int main(int argc, char **argv) {
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  const auto arrValues = Values();
  const auto arrTexts = Texts();
  std::printf("ratio FormatEngr / to_chars: %.2f (limit 2)\n",
              Best([&] { FormatOurs(arrValues); }) / Best([&] { FormatStandard(arrValues); }));
  std::printf("ratio ReadEntry / from_chars: %.2f (limit 3)\n",
              Best([&] { ParseOurs(arrTexts); }) / Best([&] { ParseStandard(arrTexts); }));
  return 0;
}
