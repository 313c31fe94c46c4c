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
    explicit Asset(const QUrl& url);  // initWithURL
    ~Asset() override;

    QUrl url() const { return url_; }
    void setURL(const QUrl& url);

    QString fullFilename() const;
    QString filename() const;

    bool includedInSlideshow() const { return includedInSlideshow_; }
    void setIncludedInSlideshow(bool included);

signals:
    void includedInSlideshowChanged();

private:
    QUrl url_;
    bool includedInSlideshow_ = true;
};
