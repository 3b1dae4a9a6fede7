// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/secrets/DXSealedFile.h"

#include <QCborMap>
#include <QCborValue>
#include <QDir>
#include <QFile>
#include <QLockFile>
#include <QSaveFile>

#include <sodium.h>

#include <chrono>

namespace
{

constexpr QFile::Permissions ownerOnly = QFile::ReadOwner | QFile::WriteOwner;

DXError failure(const QString &text)
{
    return {DXProductName(u"sealedFile"), 0, text};
}

unsigned char *bytesOf(QByteArray &array)
{
    return reinterpret_cast<unsigned char *>(array.data());
}

const unsigned char *bytesOf(const QByteArray &array)
{
    return reinterpret_cast<const unsigned char *>(array.constData());
}

/// Nonce and ciphertext (libsodium, "Authenticated encryption").
QByteArray seal(const QByteArray &plain, const QByteArray &key)
{
    QByteArray sealed(
        qsizetype(crypto_secretbox_NONCEBYTES + crypto_secretbox_MACBYTES) + plain.size(), '\0');
    randombytes_buf(sealed.data(), crypto_secretbox_NONCEBYTES);
    crypto_secretbox_easy(bytesOf(sealed) + crypto_secretbox_NONCEBYTES, bytesOf(plain),
                          static_cast<unsigned long long>(plain.size()), bytesOf(sealed),
                          bytesOf(key));
    return sealed;
}

std::optional<QByteArray> unseal(const QByteArray &sealed, const QByteArray &key)
{
    const qsizetype size =
        sealed.size() - qsizetype(crypto_secretbox_NONCEBYTES + crypto_secretbox_MACBYTES);
    if (size < 0)
        return std::nullopt;
    QByteArray plain(size, '\0');
    if (crypto_secretbox_open_easy(bytesOf(plain), bytesOf(sealed) + crypto_secretbox_NONCEBYTES,
                                   static_cast<unsigned long long>(sealed.size())
                                       - crypto_secretbox_NONCEBYTES,
                                   bytesOf(sealed), bytesOf(key))
        != 0)
        return std::nullopt;
    return plain;
}

} // namespace

DXSealedFile::DXSealedFile(const QString &folder)
    : m_folder(folder)
    , m_path(QDir(folder).filePath(QStringLiteral("secrets")))
    , m_keyPath(QDir(folder).filePath(QStringLiteral("secrets.key")))
    // Before anything else of the library, whose first use may come on any thread.
    , m_canSeal(sodium_init() >= 0)
{ }

QString DXSealedFile::read(const QString &key, DXError *error) const
{
    const auto texts = load(error);
    return texts ? texts->value(key) : QString();
}

bool DXSealedFile::write(const QString &key, const QString &text, DXError *error) const
{
    if (text.isNull() && !QFile::exists(m_path))
        return true;
    return update(
        key, [&text](const QString &) { return text; }, error);
}

bool DXSealedFile::update(const QString &key, const Change &change, DXError *error) const
{
    if (!QDir().mkpath(m_folder)) {
        DXError::report(
            error, failure(QStringLiteral("The folder \"%1\" could not be made.").arg(m_folder)));
        return false;
    }
    QLockFile lock(m_path + QStringLiteral(".lock"));
    if (!lock.tryLock(std::chrono::milliseconds(std::chrono::seconds(5)).count())) {
        DXError::report(error, failure(QStringLiteral("The file \"%1\" is in use by another "
                                                      "program. Try again.")
                                           .arg(m_path)));
        return false;
    }
    const auto stored = load(error);
    if (!stored)
        return false;
    Texts texts = *stored;
    const QString text = change(texts.value(key));
    if (text.isNull())
        texts.remove(key);
    else
        texts.insert(key, text);
    return texts == *stored || save(texts, error);
}

QByteArray DXSealedFile::readKey() const
{
    QFile file(m_keyPath);
    const QByteArray key = file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    return key.size() == crypto_secretbox_KEYBYTES ? key : QByteArray();
}

QByteArray DXSealedFile::loadKey(DXError *error) const
{
    QByteArray key = readKey();
    if (key.isEmpty())
        DXError::report(error,
                        failure(QStringLiteral("The passwords in \"%1\" cannot be read: their key, "
                                               "\"%2\", is missing or damaged. Restore it, or "
                                               "remove both files to start afresh.")
                                    .arg(m_path, m_keyPath)));
    return key;
}

// A file that is gone leaves its key for the next: somebody may be reading with it.
QByteArray DXSealedFile::loadOrCreateKey(DXError *error) const
{
    if (QFile::exists(m_path))
        return loadKey(error);
    QByteArray key = readKey();
    if (!key.isEmpty())
        return key;
    key.resize(crypto_secretbox_KEYBYTES);
    randombytes_buf(key.data(), crypto_secretbox_KEYBYTES);
    return replaceFile(m_keyPath, key, error) ? key : QByteArray();
}

std::optional<DXSealedFile::Texts> DXSealedFile::load(DXError *error) const
{
    if (!m_canSeal) {
        DXError::report(error,
                        failure(QStringLiteral("Passwords cannot be kept: libsodium found no "
                                               "source of random numbers on this system.")));
        return std::nullopt;
    }
    QFile file(m_path);
    const bool isOpen = file.open(QFile::ReadOnly);
    if (!isOpen && !file.exists())
        return Texts();
    const QByteArray key = loadKey(error);
    if (key.isEmpty())
        return std::nullopt;
    const auto plain = isOpen ? unseal(file.readAll(), key) : std::optional<QByteArray>();
    if (!plain) {
        DXError::report(
            error, failure(QStringLiteral("The file \"%1\" cannot be read: it is damaged, or "
                                          "\"%2\" is not its key. Restore both from one backup, "
                                          "or remove them to start afresh.")
                               .arg(m_path, m_keyPath)));
        return std::nullopt;
    }
    Texts texts;
    const QCborMap map = QCborValue::fromCbor(*plain).toMap();
    for (auto entry = map.begin(); entry != map.end(); ++entry)
        texts.insert(entry.key().toString(), entry.value().toString());
    return texts;
}

bool DXSealedFile::save(const Texts &texts, DXError *error) const
{
    if (texts.isEmpty()) {
        if (QFile::remove(m_path) || !QFile::exists(m_path))
            return true;
        DXError::report(
            error, failure(QStringLiteral("The file \"%1\" could not be removed.").arg(m_path)));
        return false;
    }
    const QByteArray key = loadOrCreateKey(error);
    if (key.isEmpty())
        return false;
    QCborMap map;
    for (auto text = texts.begin(); text != texts.end(); ++text)
        map.insert(text.key(), text.value());
    return replaceFile(m_path, seal(QCborValue(map).toCbor(), key), error);
}

bool DXSealedFile::replaceFile(const QString &path, const QByteArray &bytes, DXError *error) const
{
    QSaveFile file(path);
    if (file.open(QFile::WriteOnly) && file.setPermissions(ownerOnly)
        && file.write(bytes) == bytes.size() && file.commit())
        return true;
    DXError::report(error, failure(QStringLiteral("The file \"%1\" could not be written: %2.")
                                       .arg(path, file.errorString())));
    return false;
}
