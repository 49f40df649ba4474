#include "remote/ServerAddress.h"

#include <gtest/gtest.h>

#include "support/RunTimeError.h"

namespace tarvik::remote {
namespace {

TEST(ServerAddress, DefaultPortAndSecurity) {
  const ServerAddress address = ParseServerAddress("tarvik://rack1.lab");
  EXPECT_TRUE(address.fSecure);
  EXPECT_EQ(address.strHost, "rack1.lab");
  EXPECT_EQ(address.lngPort, 17830);
  EXPECT_EQ(address.Text(), "tarvik://rack1.lab:17830");
}

TEST(ServerAddress, FormsThatAreTaken) {
  const struct {
    const char *strUrl, *strFull;
  } rows[] = {
      {"tarvik://rack1:4000", "tarvik://rack1:4000"},
      {"TARVIK://rack1:4000/", "tarvik://rack1:4000"},
      {"  tarvik://10.0.0.7  ", "tarvik://10.0.0.7:17830"},
      {"tarvik://[fe80::1%eth0]:65535", "tarvik://[fe80::1%eth0]:65535"},
      {"tarvik://[::1]", "tarvik://[::1]:17830"},
      {"tarvik+insecure://localhost:1", "tarvik+insecure://localhost:1"},
      {"tarvik+insecure://127.8.9.10", "tarvik+insecure://127.8.9.10:17830"},
      {"tarvik+insecure://[::1]:9", "tarvik+insecure://[::1]:9"},
  };
  for (const auto &row : rows) EXPECT_EQ(ParseServerAddress(row.strUrl).Text(), row.strFull) << row.strUrl;
}

TEST(ServerAddress, WhatIsWrongIsTold) {
  const struct {
    const char *strUrl, *strPart;
  } rows[] = {
      {"rack1", "does not begin with tarvik://"},
      {"http://rack1", "the scheme \"http\" is not known"},
      {"tarvik://", "the host is missing"},
      {"tarvik://:80", "the host is missing"},
      {"tarvik://rack1:", "a number from 1 to 65535"},
      {"tarvik://rack1:0", "a number from 1 to 65535"},
      {"tarvik://rack1:65536", "a number from 1 to 65535"},
      {"tarvik://rack1:12x", "a number from 1 to 65535"},
      {"tarvik://rack1:-1", "a number from 1 to 65535"},
      {"tarvik://ra ck", "a character that no host name has"},
      {"tarvik://::1", "the host is missing"},
      {"tarvik://fe80::1", "stands in brackets"},
      {"tarvik://[::1", "the bracket is not closed"},
      {"tarvik://[rack1]", "an IPv6 address stands in the brackets"},
      {"tarvik://[::1]x", "only a port may follow"},
      {"tarvik://rack1/path", "nothing may follow host and port"},
      {"tarvik://rack1?x", "nothing may follow host and port"},
      {"tarvik://me@rack1", "a user name has no place"},
      {"tarvik+insecure://rack1", "only this machine itself"},
      {"tarvik+insecure://128.0.0.1", "only this machine itself"},
  };
  for (const auto &row : rows) {
    try {
      ParseServerAddress(row.strUrl);
      ADD_FAILURE() << row.strUrl << " is taken";
    } catch (const RunTimeError &error) {
      EXPECT_EQ(error.Number(), 5);
      EXPECT_NE(error.Description().find(row.strPart), std::string::npos) << row.strUrl << ": " << error.Description();
    }
  }
}

}  // namespace
}  // namespace tarvik::remote
