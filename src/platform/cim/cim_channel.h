// The shared channel behind a ConnectionInfo of a CIM target: one connection, one login, and what
// was read of the service in this scan.
//
// Each class is enumerated at most once, in the first namespace that knows it; associations are
// read the same way and joined by the readers. So the number of requests does not grow with what
// the target holds. Nothing is kept of a class that could not be read: the next question asks
// again.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "common/result/tarsel_result.h"
#include "platform/cim/cim_snapshot.h"
#include "platform/cim/cim_target.h"
#include "platform/connection/connection.h"
#include "transport/cim_xml/cim_client.h"
#include "transport/http/polite_transport.h"

namespace Vantix::cim {

class CimChannel {
  public:
    /// `bottom` carries the exchanges with the target of `option`; `clock` must outlive the object.
    CimChannel(const VantixConnection::ConnectOption& option,
               std::unique_ptr<transport::HttpTransport> bottom, transport::Clock& clock);
    ~CimChannel();
    CimChannel(const CimChannel&) = delete;
    CimChannel& operator=(const CimChannel&) = delete;

    /// The channel of an established connection; null when it has none of this kind.
    static CimChannel* Of(const VantixConnection::ConnectionInfo& connection);

    /// Logs in by reading the computer systems. Must be called once, first.
    [[nodiscard]] transport::CimFailure Open();

    /// Reads these lists of the snapshot, unless they were read before. A class that the service
    /// does not know gives an empty list; only of systems and software that is a failure. With a
    /// failure the lists hold what could be read.
    [[nodiscard]] transport::CimFailure Need(const std::vector<CimSource>& sources);

    [[nodiscard]] const CimSnapshot& Snapshot() const { return snapshot_; }
    /// Instances of the source that were left out because they could not be read.
    [[nodiscard]] const std::vector<std::string>& Skipped(CimSource source) const;
    /// The software with what tells which of it is installed.
    [[nodiscard]] transport::CimFailure NeedSoftware();

    /// The result of a failure to read, remembered for the run: a later protocol leg reports it
    /// where it concerns the target itself.
    TarselResult Remember(const transport::CimFailure& failure);

    [[nodiscard]] CimTargetKind Kind() const { return TargetKindOf(option_); }
    [[nodiscard]] VantixConnection::RunContext& Run() { return *option_.run; }
    [[nodiscard]] int Requests() const { return client_.Requests(); }

  private:
    struct Row;
    struct State {
        bool is_read = false;
        transport::CimFailure unknown;  ///< no namespace knows the class
        std::vector<std::string> skipped;
    };
    enum class Standing { kUntried, kAlive, kDead };
    struct Namespace {
        std::string name;
        Standing standing = Standing::kUntried;
    };

    static const std::vector<Row>& Rows();
    [[nodiscard]] transport::CimFailure Read(const Row& row);
    [[nodiscard]] std::vector<std::size_t> Order(bool is_required) const;
    [[nodiscard]] transport::CimAnswer Ask(std::size_t where, const char* class_name);

    VantixConnection::ConnectOption option_;
    std::unique_ptr<transport::HttpTransport> bottom_;
    transport::PoliteTransport polite_;
    transport::CimClient client_;
    CimSnapshot snapshot_;
    std::vector<State> states_;
    std::vector<Namespace> namespaces_;
    std::size_t home_ = 0;  ///< where the last required class was found
};

}  // namespace Vantix::cim
