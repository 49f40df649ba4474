#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <future>

#include "InstrumentFace.h"

namespace tarvik::test {

namespace fs = std::filesystem;

TEST_F(InstrumentFace, RegistersItselfForCreationByNameAndTakesItBack) {
  EXPECT_EQ(Export<NoArgument>("DllRegisterServer")(), StatusOk);
  const fs::path manifest = m_folder / "tarvikvi/drivers/TarvikVI.clsInstrInterface.driver";
  std::string strLine;
  std::getline(std::ifstream(manifest), strLine);
  EXPECT_TRUE(fs::equivalent(strLine, TARVIK_LIBRARY)) << strLine;
  EXPECT_TRUE(CreateObject("TarvikVI.clsInstrInterface", ""));
  EXPECT_EQ(Export<NoArgument>("DllUnregisterServer")(), StatusOk);
  EXPECT_FALSE(fs::exists(manifest));
  EXPECT_EQ(Export<NoArgument>("DllUnregisterServer")(), StatusOk);
}

TEST_F(InstrumentFace, RegistrationWithoutAPlaceToWriteSaysSo) {
  std::ofstream(m_folder / "tarvikvi") << "a file where the folder should be\n";
  EXPECT_EQ(Export<NoArgument>("DllRegisterServer")(), StatusAccessDenied);
}

TEST_F(InstrumentFace, WithoutAHomeRegistrationWritesNothingIntoTheCurrentFolder) {
  unsetenv("HOME");
  unsetenv("XDG_DATA_HOME");
  const fs::path before = fs::current_path();
  fs::current_path(m_folder);
  EXPECT_EQ(Export<NoArgument>("DllRegisterServer")(), StatusAccessDenied);
  EXPECT_EQ(TakeErrorInfo()->strDescription, "There is no home folder to register in");
  EXPECT_EQ(Export<NoArgument>("DllUnregisterServer")(), StatusAccessDenied);
  EXPECT_TRUE(fs::is_empty(m_folder));
  fs::current_path(before);
}

TEST_F(InstrumentFace, TheLibraryStaysWhileAClientHoldsSomething) {
  const Client face = NewFace();
  EXPECT_EQ(Export<NoArgument>("DllCanUnloadNow")(), StatusFalse);
}

TEST_F(InstrumentFace, TheLibraryMayGoWhenTheLastFaceFactoryAndLockAreGivenBack) {
  // Asked on another thread: this one's instrument interface lives on behind its faces.
  const auto canUnload = [] { return std::async(std::launch::async, Export<NoArgument>("DllCanUnloadNow")).get(); };
  ASSERT_EQ(canUnload(), StatusOk);
  Ref<IClassFactory> factory;
  ASSERT_EQ(Export<GetClassObject>("DllGetClassObject")(ClassIdOf("TarvikVI.clsInstrInterface"), IidClassFactory,
                                                        reinterpret_cast<void **>(factory.Out())),
            StatusOk);
  EXPECT_EQ(factory->LockServer(-1), StatusOk);
  EXPECT_EQ(canUnload(), StatusFalse);
  EXPECT_EQ(factory->LockServer(0), StatusOk);
  factory = nullptr;
  EXPECT_EQ(canUnload(), StatusOk);
  {
    const Client face = NewFace();
    EXPECT_EQ(canUnload(), StatusFalse);
  }
  EXPECT_EQ(canUnload(), StatusOk);
}

TEST_F(InstrumentFace, OtherClassesAndInterfacesAreRefused) {
  void *object = this;
  const auto getClassObject = Export<GetClassObject>("DllGetClassObject");
  EXPECT_EQ(getClassObject(ClassIdOf("TarvikVI.Other"), IidClassFactory, &object), StatusClassNotAvailable);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(getClassObject(ClassIdOf("TarvikVI.clsInstrInterface"), IidDispatch, &object), StatusNoInterface);
  EXPECT_EQ(getClassObject(ClassIdOf("TarvikVI.clsInstrInterface"), IidClassFactory, nullptr), StatusPointer);
}

}  // namespace tarvik::test
