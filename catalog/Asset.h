#pragma once

#include <QDateTime>
#include <QImage>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <optional>

// The record of one photo file: where it is, its cached size, its thumbnail and
// whether it is ticked for the stamp run.
class Asset : public QObject {
    Q_OBJECT
  public:
    static constexpr const char* kUnrecognizedFileType = "(Unrecognized file type)";

    explicit Asset(const QUrl& url);  // initWithURL
    ~Asset() override;

    QUrl url() const { return url_; }
    void setURL(const QUrl& url);

    QString fullFilename() const;
    QString filename() const;

    // A readable name for the file's kind, found from its extension.
    QString localizedTypeDescription() const;

    std::optional<QDateTime> dateLastUpdated() const { return dateLastUpdated_; }
    void setDateLastUpdated(const std::optional<QDateTime>& date) { dateLastUpdated_ = date; }

    // The size in bytes; read from the file while the cached value is 0.
    quint64 fileSize();
    void setFileSize(quint64 size) { fileSize_ = size; }

    // Main thread only; setting the image already held does nothing.
    QImage previewImage() const { return previewImage_; }
    void setPreviewImage(const QImage& image);

    bool includedInSlideshow() const { return includedInSlideshow_; }
    void setIncludedInSlideshow(bool included);

    // The extensions this kind of asset accepts, compared exactly.
    static QStringList fileTypes() { return {}; }

    virtual bool loadMetadata() { return false; }
    // Makes the preview and hands it to the main thread; false when none was made.
    virtual bool loadPreviewImage() { return false; }
    // Starts making the preview in the background unless there is one already.
    virtual void requestPreviewImage() {}

  signals:
    void includedInSlideshowChanged();
    void previewImageChanged();

  private:
    QUrl url_;
    std::optional<QDateTime> dateLastUpdated_;
    quint64 fileSize_ = 0;
    QImage previewImage_;
    bool includedInSlideshow_ = true;
};
