// Conversion, clean-up, saving and loading at 10 to 100,000 items, and what Boost.PropertyTree
// alone needs for the same file. Every benchmark reports seconds an item as "per_item".

#include <benchmark/benchmark.h>

#include <boost/property_tree/ptree.hpp>
#include <boost/property_tree/xml_parser.hpp>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <locale>
#include <string>

#include "bench_data.h"
#include "service/update_scan_service/detail/identity_conversion.h"
#include "service/update_scan_service/detail/result_cleanup.h"
#include "service/update_scan_service/serialize_update_scan.h"

namespace {

using boost::property_tree::ptree;
using service::SerializeScanReport;
using service::UpdateScanReport;

std::string ScanFile() {
    return (std::filesystem::temp_directory_path() / "tarsel-bench-scan.xml").string();
}

// Times one call and excludes what prepares it and what destroys its result.
template <typename Call>
void TimeOnly(benchmark::State& state, Call&& call) {
    const auto begin = std::chrono::steady_clock::now();
    call();
    const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - begin;
    state.SetIterationTime(spent.count());
}

void ReportPerItem(benchmark::State& state) {
    state.counters["per_item"] = benchmark::Counter(
        static_cast<double>(state.range(0)),
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void Conversion(benchmark::State& state) {
    const auto identities = bench::MakeIdentities(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        UpdateScanReport report;
        TimeOnly(state, [&] { service::detail::AppendSoftwareIdentities(report, identities); });
        benchmark::DoNotOptimize(report);
    }
    ReportPerItem(state);
}

void CleanUp(benchmark::State& state) {
    const auto original = bench::MakeReport(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        UpdateScanReport report = original;
        TimeOnly(state, [&] {
            service::detail::RemoveOemItems(report);
            service::detail::DistinguishDuplicateNames(report);
        });
        benchmark::DoNotOptimize(report);
    }
    ReportPerItem(state);
}

void SaveXml(benchmark::State& state) {
    const auto report = bench::MakeReport(static_cast<std::size_t>(state.range(0)));
    int code = 0;
    for (auto _ : state) {
        TimeOnly(state, [&] { code = SerializeScanReport::SaveToXml(report, ScanFile()); });
        if (code != 0) state.SkipWithError("the scan file could not be saved");
    }
    ReportPerItem(state);
}

// The same tree, built beforehand, written by the library alone.
void BareWriteXml(benchmark::State& state) {
    ptree tree;
    SerializeScanReport::AddToPtree(bench::MakeReport(static_cast<std::size_t>(state.range(0))),
                                    tree);
    const boost::property_tree::xml_writer_settings<std::string> settings('\t', 1, "utf-8");
    for (auto _ : state) {
        TimeOnly(state, [&] {
            boost::property_tree::write_xml(ScanFile(), tree, std::locale(), settings);
        });
    }
    ReportPerItem(state);
}

// The tree built and written by the library alone: the whole of what saving cannot do without.
void BareBuildAndWriteXml(benchmark::State& state) {
    ptree original;
    SerializeScanReport::AddToPtree(bench::MakeReport(static_cast<std::size_t>(state.range(0))),
                                    original);
    const boost::property_tree::xml_writer_settings<std::string> settings('\t', 1, "utf-8");
    for (auto _ : state) {
        TimeOnly(state, [&] {
            const ptree tree = original;
            boost::property_tree::write_xml(ScanFile(), tree, std::locale(), settings);
        });
    }
    ReportPerItem(state);
}

void LoadXml(benchmark::State& state) {
    const auto saved = bench::MakeReport(static_cast<std::size_t>(state.range(0)));
    int code = SerializeScanReport::SaveToXml(saved, ScanFile());
    for (auto _ : state) {
        UpdateScanReport report;
        TimeOnly(state, [&] { code |= SerializeScanReport::LoadFromXml(ScanFile(), report); });
        const bool complete = report.GetScanResults().size() == saved.GetScanResults().size();
        if (code != 0 || !complete) state.SkipWithError("the scan file could not be loaded");
    }
    ReportPerItem(state);
}

void BareReadXml(benchmark::State& state) {
    const auto saved = bench::MakeReport(static_cast<std::size_t>(state.range(0)));
    if (SerializeScanReport::SaveToXml(saved, ScanFile()) != 0) state.SkipWithError("not saved");
    for (auto _ : state) {
        TimeOnly(state, [] {
            ptree tree;
            boost::property_tree::read_xml(ScanFile(), tree);
            benchmark::DoNotOptimize(tree);
        });
    }
    ReportPerItem(state);
}

#define TARSEL_BENCH(function)                                                   \
    BENCHMARK(function)->Arg(10)->Arg(1000)->Arg(100000)->UseManualTime()->Unit( \
        benchmark::kMillisecond)

TARSEL_BENCH(Conversion);
TARSEL_BENCH(CleanUp);
TARSEL_BENCH(SaveXml);
TARSEL_BENCH(BareWriteXml);
TARSEL_BENCH(BareBuildAndWriteXml);
TARSEL_BENCH(LoadXml);
TARSEL_BENCH(BareReadXml);

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
    benchmark::RunSpecifiedBenchmarks();
    std::remove(ScanFile().c_str());
    return 0;
}
