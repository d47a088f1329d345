#include "transport/ipmi/ipmi_provider_windows.h"

#include <windows.h>

#include <wbemidl.h>

#include <cstdint>
#include <optional>

namespace Vantix::transport {
namespace {

constexpr const wchar_t* kClass = L"Microsoft_IPMI";
constexpr const wchar_t* kMethod = L"RequestResponse";
constexpr BYTE kBmcAddress = 0x20;
constexpr long kLookAgainMilliseconds = 100;
constexpr long kFindMilliseconds = 10000;
constexpr auto kNotFound = static_cast<HRESULT>(WBEM_E_NOT_FOUND);

bool Is(HRESULT result, WBEMSTATUS status) {
    return result == static_cast<HRESULT>(status);
}

/// Has a reference to an object of the system.
template <typename Interface>
class Reference {
  public:
    Reference() = default;
    ~Reference() {
        if (object_ != nullptr) object_->Release();
    }
    Reference(const Reference&) = delete;
    Reference& operator=(const Reference&) = delete;

    [[nodiscard]] Interface** Slot() { return &object_; }
    [[nodiscard]] Interface* Get() const { return object_; }
    [[nodiscard]] Interface* operator->() const { return object_; }

  private:
    Interface* object_ = nullptr;
};

class Text {
  public:
    explicit Text(const wchar_t* text) : text_(SysAllocString(text)) {}
    ~Text() { SysFreeString(text_); }
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;

    [[nodiscard]] BSTR Get() const { return text_; }

  private:
    BSTR text_;
};

class Value {
  public:
    Value() { VariantInit(&value_); }
    ~Value() { VariantClear(&value_); }
    Value(const Value&) = delete;
    Value& operator=(const Value&) = delete;

    [[nodiscard]] VARIANT* Slot() { return &value_; }

    void SetByte(BYTE number) {
        value_.vt = VT_UI1;
        value_.bVal = number;
    }
    void SetNumber(LONG number) {
        value_.vt = VT_I4;
        value_.lVal = number;
    }
    void SetBytes(const Bytes& bytes) {
        SAFEARRAY* array = SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(bytes.size()));
        if (array == nullptr) return;
        value_.vt = VT_ARRAY | VT_UI1;
        value_.parray = array;
        for (LONG at = 0; at < static_cast<LONG>(bytes.size()); ++at) {
            BYTE byte = bytes[static_cast<std::size_t>(at)];
            SafeArrayPutElement(array, &at, &byte);
        }
    }

    [[nodiscard]] std::optional<std::uint32_t> Number() {
        if (VariantChangeType(&value_, &value_, 0, VT_UI4) != S_OK) return std::nullopt;
        return value_.ulVal;
    }
    [[nodiscard]] Bytes AsBytes() const {
        Bytes bytes;
        if (value_.vt != (VT_ARRAY | VT_UI1) || value_.parray == nullptr) return bytes;
        LONG last = -1;
        if (SafeArrayGetUBound(value_.parray, 1, &last) != S_OK) return bytes;
        for (LONG at = 0; at <= last; ++at) {
            BYTE byte = 0;
            if (SafeArrayGetElement(value_.parray, &at, &byte) != S_OK) break;
            bytes.push_back(byte);
        }
        return bytes;
    }

  private:
    VARIANT value_;
};

/// A thread that was set up in another way by its owner serves as well.
class Apartment {
  public:
    Apartment() : result_(CoInitializeEx(nullptr, COINIT_MULTITHREADED)) {}
    ~Apartment() {
        if (SUCCEEDED(result_)) CoUninitialize();
    }
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;

  private:
    HRESULT result_;
};

class Provider : public RawIpmi {
  public:
    /// False with `cause` where there is no driver to talk to.
    bool Open(std::string& cause) {
        const char* step = "WMI does not start";
        HRESULT result = Connect();
        if (Is(result, WBEM_S_NO_ERROR)) {
            step = "the Microsoft IPMI driver cannot be used";
            result = FindMethod();
        }
        if (Is(result, WBEM_S_NO_ERROR)) result = FindInstance();
        if (Is(result, WBEM_S_NO_ERROR)) return true;
        const bool is_absent =
            Is(result, WBEM_S_FALSE) || result == kNotFound || Is(result, WBEM_E_INVALID_CLASS);
        cause = is_absent ? "the Microsoft IPMI driver shows no device; enable it, or install "
                            "ipmitool"
                          : std::string(step) + " (" + ErrorText(result) + ")";
        return false;
    }

    RawAnswer Send(const RawRequest& request, const std::function<bool()>& must_end) override {
        Reference<IWbemClassObject> arguments;
        if (!MakeArguments(request, arguments)) return {};
        Reference<IWbemCallResult> call;
        const Text method(kMethod);
        const HRESULT started =
            services_->ExecMethod(instance_.bstrVal, method.Get(), WBEM_FLAG_RETURN_IMMEDIATELY,
                                  nullptr, arguments.Get(), nullptr, call.Slot());
        if (FAILED(started) || call.Get() == nullptr) return {};
        Reference<IWbemClassObject> answer;
        auto result = static_cast<HRESULT>(WBEM_S_TIMEDOUT);
        while (Is(result, WBEM_S_TIMEDOUT) && !must_end()) {
            result = call->GetResultObject(kLookAgainMilliseconds, answer.Slot());
        }
        if (!Is(result, WBEM_S_NO_ERROR) || answer.Get() == nullptr) return {};
        return AnswerOf(*answer.Get());
    }

    Provider() { VariantInit(&instance_); }
    ~Provider() override { VariantClear(&instance_); }

  private:
    static std::string ErrorText(HRESULT result) {
        const auto number = static_cast<std::uint32_t>(result);
        if (Is(result, WBEM_E_ACCESS_DENIED) || result == E_ACCESSDENIED) {
            return "for administrators only";
        }
        std::string digits;
        for (int shift = 24; shift >= 0; shift -= 8) {
            digits += HexByte(static_cast<std::uint8_t>(number >> shift & 0xffU));
        }
        return "Windows error 0x" + digits;
    }

    HRESULT Connect() {
        Reference<IWbemLocator> locator;
        HRESULT result =
            CoCreateInstance(CLSID_WbemLocator, nullptr, CLSCTX_INPROC_SERVER, IID_IWbemLocator,
                             reinterpret_cast<void**>(locator.Slot()));
        if (FAILED(result)) return result;
        const Text place(L"ROOT\\WMI");
        result = locator->ConnectServer(place.Get(), nullptr, nullptr, nullptr,
                                        WBEM_FLAG_CONNECT_USE_MAX_WAIT, nullptr, nullptr,
                                        services_.Slot());
        if (FAILED(result)) return result;
        // The provider acts with this user's rights.
        (void)CoSetProxyBlanket(services_.Get(), RPC_C_AUTHN_WINNT, RPC_C_AUTHZ_NONE, nullptr,
                                RPC_C_AUTHN_LEVEL_CALL, RPC_C_IMP_LEVEL_IMPERSONATE, nullptr,
                                EOAC_NONE);
        return S_OK;
    }

    HRESULT FindMethod() {
        const Text name(kClass);
        Reference<IWbemClassObject> description;
        const HRESULT result =
            services_->GetObject(name.Get(), 0, nullptr, description.Slot(), nullptr);
        if (FAILED(result)) return result;
        return description->GetMethod(kMethod, 0, parameters_.Slot(), nullptr);
    }

    HRESULT FindInstance() {
        const Text name(kClass);
        Reference<IEnumWbemClassObject> instances;
        HRESULT result = services_->CreateInstanceEnum(
            name.Get(), WBEM_FLAG_FORWARD_ONLY | WBEM_FLAG_RETURN_IMMEDIATELY, nullptr,
            instances.Slot());
        if (FAILED(result)) return result;
        Reference<IWbemClassObject> instance;
        ULONG count = 0;
        result = instances->Next(kFindMilliseconds, 1, instance.Slot(), &count);
        if (!Is(result, WBEM_S_NO_ERROR)) return result;
        if (instance.Get() == nullptr) return kNotFound;
        result = instance->Get(L"__PATH", 0, &instance_, nullptr, nullptr);
        return SUCCEEDED(result) && instance_.vt != VT_BSTR ? kNotFound : result;
    }

    bool MakeArguments(const RawRequest& request, Reference<IWbemClassObject>& arguments) {
        if (parameters_.Get() == nullptr) return false;
        if (FAILED(parameters_->SpawnInstance(0, arguments.Slot()))) return false;
        Value network_function, lun, address, command, size, data;
        network_function.SetByte(request.network_function);
        lun.SetByte(0);
        address.SetByte(kBmcAddress);
        command.SetByte(request.command);
        size.SetNumber(static_cast<LONG>(request.data.size()));
        data.SetBytes(request.data);
        const auto put = [&](const wchar_t* name, Value& value) {
            return SUCCEEDED(arguments->Put(name, 0, value.Slot(), 0));
        };
        return put(L"NetworkFunction", network_function) && put(L"Lun", lun) &&
               put(L"ResponderAddress", address) && put(L"Command", command) &&
               put(L"RequestDataSize", size) && put(L"RequestData", data);
    }

    static RawAnswer AnswerOf(IWbemClassObject& answer) {
        Value completion, size, data;
        const auto get = [&](const wchar_t* name, Value& value) {
            return SUCCEEDED(answer.Get(name, 0, value.Slot(), nullptr, nullptr));
        };
        if (!get(L"CompletionCode", completion) || !get(L"ResponseDataSize", size)) return {};
        (void)get(L"ResponseData", data);
        const auto code = completion.Number();
        const auto length = size.Number();
        if (!code || !length || *code > 0xff) return {};
        return AnswerBehindCode(static_cast<int>(*code), data.AsBytes(), *length);
    }

    const Apartment apartment_;  // first, so that it outlives the objects
    Reference<IWbemServices> services_;
    Reference<IWbemClassObject> parameters_;
    VARIANT instance_;  ///< its path
};

}  // namespace

std::unique_ptr<RawIpmi> OpenIpmiProvider(std::string& cause) {
    auto provider = std::make_unique<Provider>();
    if (!provider->Open(cause)) return nullptr;
    return provider;
}

}  // namespace Vantix::transport
