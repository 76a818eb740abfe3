// Why a photograph was refused and what can be done about it, one row a RejectionReason, in the order of its cases.
#include "localization/RejectionMessages.h"

#include <iterator>

namespace tessaly::Localization {
namespace {

struct Row {
  RejectionReason reason;
  Entry message;
};

// clang-format off
constexpr Row messages[] = {
    {RejectionReason::losslessJPEG,
     {"This DNG uses lossless JPEG compression, which Tessaly doesn't support yet. If your camera offers an uncompressed DNG option, use it.",
      "此 DNG 使用暂不支持的无损 JPEG 压缩。如相机提供未压缩 DNG 选项，请使用该选项。",
      "Ce DNG utilise la compression JPEG sans perte, pas encore prise en charge. Si l’appareil propose un DNG non compressé, utilisez cette option."}},
    {RejectionReason::lossyJPEG,
     {"This DNG uses lossy JPEG compression, which Tessaly doesn't support yet. Use an original uncompressed DNG if available.",
      "此 DNG 使用暂不支持的有损 JPEG 压缩。如有原始的未压缩 DNG，请使用该文件。",
      "Ce DNG utilise la compression JPEG avec perte, pas encore prise en charge. Utilisez un DNG original non compressé si possible."}},
    {RejectionReason::jpegXL,
     {"This DNG uses JPEG XL compression, which Tessaly doesn't support yet. Choose uncompressed DNG in your camera if available.",
      "此 DNG 使用暂不支持的 JPEG XL 压缩。如相机提供未压缩 DNG，请选择该选项。",
      "Ce DNG utilise la compression JPEG XL, pas encore prise en charge. Choisissez un DNG non compressé dans l’appareil si possible."}},
    {RejectionReason::proprietaryRAW,
     {"This camera RAW format is not supported yet. Support for converted files is planned. Adobe DNG Converter defaults to lossless JPEG, which Tessaly cannot read yet; conversion is not a supported workaround.",
      "暂不支持此相机 RAW 格式。已计划支持转换后的文件。Adobe DNG Converter 默认使用无损 JPEG，Tessaly 目前还无法读取；转换并非受支持的变通方法。",
      "Ce format RAW d’appareil n’est pas encore pris en charge. La prise en charge des fichiers convertis est prévue. Adobe DNG Converter utilise par défaut la compression JPEG sans perte, que Tessaly ne sait pas encore lire ; la conversion n’est pas une solution prise en charge."}},
    {RejectionReason::nonBayer,
     {"This DNG uses a sensor colour pattern Tessaly doesn't support. Only 2×2 Bayer colour patterns and single-channel monochrome are supported; X-Trans and SuperCCD are not supported yet.",
      "此 DNG 使用 Tessaly 不支持的传感器色彩排列。仅支持 2×2 拜耳色彩排列和单通道黑白；暂不支持 X-Trans 和 SuperCCD。",
      "Ce DNG utilise une matrice de couleurs du capteur que Tessaly ne prend pas en charge. Seuls les matrices de Bayer 2×2 et le monochrome à canal unique sont pris en charge ; X-Trans et SuperCCD ne le sont pas encore."}},
    {RejectionReason::linear,
     {"This DNG contains demosaiced or multi-channel image data. Tessaly needs original Bayer or single-channel monochrome sensor data. Use the original camera DNG if available.",
      "此 DNG 包含已去马赛克或多通道的图像数据。Tessaly 需要原始的拜耳或单通道黑白传感器数据。如有相机的原始 DNG，请使用该文件。",
      "Ce DNG contient des données d’image dématricées ou à plusieurs canaux. Tessaly a besoin des données originales du capteur, Bayer ou monochromes à canal unique. Utilisez le DNG original de l’appareil si possible."}},
    {RejectionReason::damaged,
     {"This DNG appears incomplete or has invalid image information. Copy the original file again from your card or backup and retry.",
      "此 DNG 似乎不完整，或包含无效的图像信息。请从存储卡或备份重新拷贝原始文件后重试。",
      "Ce DNG semble incomplet ou contient des informations d’image non valides. Copiez à nouveau le fichier original depuis votre carte ou votre sauvegarde, puis réessayez."}},
    {RejectionReason::unreadable,
     {"Tessaly couldn't open this file. Check that it is available locally and that you have permission to read it, then retry.",
      "Tessaly 无法打开此文件。请确认该文件在本机可用且您有读取权限，然后重试。",
      "Tessaly n’a pas pu ouvrir ce fichier. Vérifiez qu’il est disponible localement et que vous avez l’autorisation de le lire, puis réessayez."}},
    {RejectionReason::mismatch,
     {"This file doesn't match the camera profile or the other calibration frames: the camera body, serial number, image size or sensor layout differs. Use a separate profile for each physical camera body and matching original DNGs.",
      "此文件与相机配置文件或其他校准帧不匹配：相机机身、序列号、图像尺寸或传感器布局不同。请为每台相机机身使用单独的配置文件和与之匹配的原始 DNG。",
      "Ce fichier ne correspond pas au profil d’appareil ou aux autres images d’étalonnage : le boîtier, le numéro de série, la taille de l’image ou la disposition du capteur diffère. Utilisez un profil distinct pour chaque boîtier et des DNG originaux correspondants."}},
    {RejectionReason::unsupported,
     {"This DNG uses an image layout or feature Tessaly doesn't support yet. Try an original uncompressed Bayer or monochrome DNG from your camera.",
      "此 DNG 使用 Tessaly 暂不支持的图像布局或功能。请尝试使用相机的原始未压缩拜耳或黑白 DNG。",
      "Ce DNG utilise une disposition d’image ou une fonction que Tessaly ne prend pas encore en charge. Essayez un DNG original non compressé, Bayer ou monochrome, de votre appareil."}},
    {RejectionReason::container,
     {"This file uses a TIFF or DNG version Tessaly cannot read yet. Use an original classic TIFF-based DNG if available.",
      "此文件使用 Tessaly 暂时无法读取的 TIFF 或 DNG 版本。如有基于经典 TIFF 的原始 DNG，请使用该文件。",
      "Ce fichier utilise une version de TIFF ou de DNG que Tessaly ne sait pas encore lire. Utilisez un DNG original basé sur le TIFF classique si possible."}},
    {RejectionReason::bitDepth,
     {"This DNG uses an unsupported RAW bit depth. Tessaly currently reads 8, 10, 12, 14 and 16-bit sensor samples.",
      "此 DNG 使用不受支持的 RAW 位深。Tessaly 目前可读取 8、10、12、14 和 16 位的传感器采样。",
      "Ce DNG utilise une profondeur de bits RAW non prise en charge. Tessaly lit actuellement les échantillons de capteur de 8, 10, 12, 14 et 16 bits."}},
    {RejectionReason::fractionalCrop,
     {"This DNG defines its crop using fractional pixel coordinates, which Tessaly doesn't support yet. Try the original camera DNG.",
      "此 DNG 使用小数像素坐标定义裁剪区域，Tessaly 暂不支持。请尝试使用相机的原始 DNG。",
      "Ce DNG définit son recadrage avec des coordonnées de pixels fractionnaires, que Tessaly ne prend pas encore en charge. Essayez le DNG original de l’appareil."}},
    {RejectionReason::fillOrder,
     {"This DNG uses an unsupported order for storing pixel bits. Try copying the original camera DNG again.",
      "此 DNG 使用不受支持的像素位存储顺序。请尝试重新拷贝相机的原始 DNG。",
      "Ce DNG utilise un ordre de stockage des bits de pixels non pris en charge. Essayez de copier à nouveau le DNG original de l’appareil."}},
    {RejectionReason::sampleRange,
     {"This DNG's brightness range cannot be represented by Tessaly's 16-bit repair format. Try the original camera DNG.",
      "此 DNG 的亮度范围无法用 Tessaly 的 16 位修复格式表示。请尝试使用相机的原始 DNG。",
      "La plage de luminosité de ce DNG ne peut pas être représentée dans le format de réparation 16 bits de Tessaly. Essayez le DNG original de l’appareil."}},
    {RejectionReason::numericType,
     {"This DNG stores image information in a number format Tessaly doesn't support yet. Try the original camera DNG.",
      "此 DNG 以 Tessaly 暂不支持的数值格式存储图像信息。请尝试使用相机的原始 DNG。",
      "Ce DNG enregistre des informations d’image dans un format de nombre que Tessaly ne prend pas encore en charge. Essayez le DNG original de l’appareil."}},
    {RejectionReason::calibrationFrames,
     {"There aren't enough usable calibration frames. Include at least three evenly lit bright flat frames and follow the in-app guide for a complete set of bright and lens-cap dark frames.",
      "可用的校准帧不足。请至少包含三张光照均匀的亮场帧，并按照应用内的指南拍摄一整套亮场帧和盖上镜头盖的暗场帧。",
      "Il n’y a pas assez d’images d’étalonnage utilisables. Incluez au moins trois images claires uniformément éclairées et suivez le guide intégré à l’application pour obtenir une série complète d’images claires et d’images noires prises avec le bouchon d’objectif."}},
    {RejectionReason::calibrationSize,
     {"This image is too small for calibration. Use a full-size original camera DNG with an active image of at least 257 × 65 pixels.",
      "此图像太小，无法用于校准。请使用相机的全尺寸原始 DNG，其有效图像至少为 257 × 65 像素。",
      "Cette image est trop petite pour l’étalonnage. Utilisez un DNG original de l’appareil en pleine résolution, avec une image active d’au moins 257 × 65 pixels."}},
};
// clang-format on

constexpr bool isIndexedByReason() {
  for (std::size_t i = 0; i < std::size(messages); ++i) {
    if (static_cast<std::size_t>(messages[i].reason) != i) return false;
  }
  return std::size(messages) == static_cast<std::size_t>(RejectionReason::calibrationSize) + 1;
}
static_assert(isIndexedByReason());

}  // namespace

const Entry& rejectionMessages(RejectionReason reason) {
  return messages[static_cast<std::size_t>(reason)].message;
}

}  // namespace tessaly::Localization
