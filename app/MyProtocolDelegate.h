#pragma once

// How a secondary window calls back into the application controller. Every
// call is optional: the defaults do nothing.
class MyProtocolDelegate {
  public:
    virtual ~MyProtocolDelegate() = default;

    // Writes the label's date text again from the model photo.
    virtual void reWriteDataTime() {}
    virtual void defaultSaveAppSetting() {}
    virtual void defaultLoadAppSetting() {}

  protected:
    MyProtocolDelegate() = default;
    MyProtocolDelegate(const MyProtocolDelegate&) = default;
    MyProtocolDelegate& operator=(const MyProtocolDelegate&) = default;
};
