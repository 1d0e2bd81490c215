#include "sto/Sto_StreamNav.h"

#include "sto/Sto_AccessText.h"

namespace Trel::Sto {

namespace {

// One value of the unit: how a header calls it, and its text.
class Notes {
 public:
  explicit Notes(Com::Meta& header) : header_(header) {}

  template <class T>
  void number(const char* key, bool known, T value) {
    if (known) {
      header_.set(key, value);
    } else {
      header_.set(key, std::string());
    }
  }
  void text(const char* key, bool known, const char* value) {
    header_.set(key, std::string(known && value != nullptr ? value : ""));
  }
  template <Enum::Enumeration E>
  void code(const char* key, bool known, E member) {
    text(key, known, Enum::GetString(member));
  }

 private:
  Com::Meta& header_;
};

}  // namespace

void note_unit(Com::Meta& header, const Nav::ComData& data) {
  Notes notes(header);
  notes.text("DevId", data.IsDevIdValid(), data.GetDevId());
  notes.number("SerialNumber", data.IsSerialNumberValid(), data.GetSerialNumber());
  notes.code("Generator", data.IsGeneratorValid(), data.GetGenerator());
  notes.number("DateFirmware", data.IsDateFirmwareValid(), data.GetDateFirmware());
  notes.number("DateCalibration", data.IsDateCalibrationValid(), data.GetDateCalibration());
  notes.code("ProductType", data.IsProductTypeValid(), data.GetProductType());
  notes.code("ProductFamily", data.IsProductFamilyValid(), data.GetProductFamily());
  notes.code("ProductGroup", data.IsProductGroupValid(), data.GetProductGroup());
  notes.code("ProductModel", data.IsProductModelValid(), data.GetProductModel());
  notes.code("ProductGeneration", data.IsProductGenerationValid(), data.GetProductGeneration());
  notes.text("ProductName", data.IsProductNameValid(), data.GetProductName());
  notes.number("OutputRegularRate", data.IsOutputRegularRateValid(), data.GetOutputRegularRate());
}

void let_unit(Nav::ComKey& key) {
  key.Reset(false);
  Nav::ComKey::KeyMain& main = key.KMain();
  main.Let_System_Id();
  main.Let_System_Dates();
  main.Let_System_ProductInfo();
  main.Let_System_ProductModel();
  main.Let_System_Source();
  main.Let_Time_Rate();
  key.PropagateKeyOr();
}

void note_source(Com::Meta& header, const Nav::ComData& data) {
  Notes notes(header);
  notes.code("Provenance", data.IsProvenanceValid(), data.GetProvenance());
  notes.text("Address.IPv4", data.IsAddressIPv4Valid(),
             address_text(data.GetAddressIPv4()).c_str());
  notes.number("Address.File", data.IsAddressFileValid(), data.GetAddressFile());
  notes.number("Address.Serial", data.IsAddressSerialValid(), data.GetAddressSerial());
}

void let_source(Nav::ComKey& key) {
  key.KMain().Let_System_Process();
  key.PropagateKeyOr();
}

}  // namespace Trel::Sto
