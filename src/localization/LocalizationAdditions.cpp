// The texts of the interface that no other program knows by their order: English (the key), Simplified Chinese, French.
//
// Placeholders stand in the same order in all three columns. French sets a no-break space before : ; ! ? and inside «
// ».
#include "localization/Localization.h"

#include <vector>

namespace tessaly::Localization {
namespace {

// clang-format off
const std::vector<Entry>& table() {
  static const std::vector<Entry> rows = {
    // What the system refuses, in the C library's words.
    {"Operation not permitted", "不允许的操作", "Opération non permise"},
    {"No such file or directory", "没有该文件或文件夹", "Fichier ou dossier introuvable"},
    {"Input/output error", "读写错误", "Erreur de lecture ou d’écriture"},
    {"No such device or address", "没有该设备或地址", "Périphérique ou adresse introuvable"},
    {"Bad file descriptor", "文件描述符无效", "Descripteur de fichier non valide"},
    {"Resource temporarily unavailable", "资源暂时不可用", "Ressource temporairement indisponible"},
    {"Cannot allocate memory", "内存不足", "Mémoire insuffisante"},
    {"Permission denied", "权限不足", "Permission refusée"},
    {"Device or resource busy", "设备或资源正忙", "Périphérique ou ressource occupé"},
    {"File exists", "文件已存在", "Le fichier existe déjà"},
    {"Invalid cross-device link", "跨设备的链接无效", "Lien entre périphériques non valide"},
    {"No such device", "没有该设备", "Périphérique introuvable"},
    {"Not a directory", "不是文件夹", "N’est pas un dossier"},
    {"Is a directory", "是一个文件夹", "Est un dossier"},
    {"Invalid argument", "参数无效", "Argument non valide"},
    {"Too many open files in system", "系统打开的文件过多", "Trop de fichiers ouverts dans le système"},
    {"Too many open files", "打开的文件过多", "Trop de fichiers ouverts"},
    {"Text file busy", "程序文件正忙", "Fichier de programme occupé"},
    {"File too large", "文件过大", "Fichier trop volumineux"},
    {"No space left on device", "设备上没有剩余空间", "Aucun espace disponible sur le périphérique"},
    {"Illegal seek", "定位无效", "Positionnement non valide"},
    {"Read-only file system", "文件系统为只读", "Système de fichiers en lecture seule"},
    {"Too many links", "链接过多", "Trop de liens"},
    {"Broken pipe", "管道已断开", "Canal interrompu"},
    {"File name too long", "文件名过长", "Nom de fichier trop long"},
    {"No locks available", "没有可用的锁", "Aucun verrou disponible"},
    {"Function not implemented", "功能未实现", "Fonction non implémentée"},
    {"Directory not empty", "文件夹非空", "Le dossier n’est pas vide"},
    {"Too many levels of symbolic links", "符号链接层数过多", "Trop de niveaux de liens symboliques"},
    {"No data available", "没有可用数据", "Aucune donnée disponible"},
    {"Link has been severed", "连接已中断", "Le lien a été rompu"},
    {"Protocol error", "协议错误", "Erreur de protocole"},
    {"Value too large for defined data type", "数值超出数据类型的范围", "Valeur trop grande pour le type de données"},
    {"Invalid or incomplete multibyte or wide character", "字符无效或不完整", "Caractère non valide ou incomplet"},
    {"Operation not supported", "不支持的操作", "Opération non prise en charge"},
    {"Network is down", "网络已关闭", "Le réseau est hors service"},
    {"Network is unreachable", "无法访问网络", "Réseau inaccessible"},
    {"Connection reset by peer", "连接被对方重置", "Connexion réinitialisée par le correspondant"},
    {"Transport endpoint is not connected", "网络存储未连接", "Le stockage réseau n’est pas connecté"},
    {"Connection timed out", "连接超时", "Délai de connexion dépassé"},
    {"Connection refused", "连接被拒绝", "Connexion refusée"},
    {"Host is down", "主机已关闭", "L’hôte est hors service"},
    {"No route to host", "无法连接到主机", "Aucun chemin vers l’hôte"},
    {"Stale file handle", "文件句柄已失效", "Référence de fichier périmée"},
    {"Structure needs cleaning", "文件系统需要修复", "Le système de fichiers doit être réparé"},
    {"Remote I/O error", "远程读写错误", "Erreur de lecture ou d’écriture distante"},
    {"Disk quota exceeded", "超出磁盘配额", "Quota de disque dépassé"},
    {"No medium found", "没有介质", "Aucun support trouvé"},
    {"Wrong medium type", "介质类型错误", "Type de support incorrect"},
    {"Operation canceled", "操作已取消", "Opération annulée"},

    // What became of the place that a file is written to: its folder, then the reason.
    {"Tessaly couldn't write to the folder “%@”: no space left on its disk. Free some space or choose another folder, then retry.",
     "Tessaly 无法写入文件夹“%@”：磁盘空间不足。请释放空间或选择其他文件夹，然后重试。",
     "Tessaly n’a pas pu écrire dans le dossier « %@ » : il n’y a plus d’espace sur son disque. Libérez de l’espace ou choisissez un autre dossier, puis réessayez."},
    {"Tessaly couldn't write to the folder “%@”: your disk quota is used up. Free some space or choose another folder, then retry.",
     "Tessaly 无法写入文件夹“%@”：您的磁盘配额已用完。请释放空间或选择其他文件夹，然后重试。",
     "Tessaly n’a pas pu écrire dans le dossier « %@ » : votre quota de disque est épuisé. Libérez de l’espace ou choisissez un autre dossier, puis réessayez."},
    {"Tessaly couldn't write to the folder “%@”: permission denied. Choose a folder that you may write to, then retry.",
     "Tessaly 无法写入文件夹“%@”：权限不足。请选择您可以写入的文件夹，然后重试。",
     "Tessaly n’a pas pu écrire dans le dossier « %@ » : permission refusée. Choisissez un dossier dans lequel vous pouvez écrire, puis réessayez."},
    {"Tessaly couldn't write to the folder “%@”: it is read-only. Choose another folder, then retry.",
     "Tessaly 无法写入文件夹“%@”：该文件夹为只读。请选择其他文件夹，然后重试。",
     "Tessaly n’a pas pu écrire dans le dossier « %@ » : il est en lecture seule. Choisissez un autre dossier, puis réessayez."},
    {"Tessaly couldn't write to the folder “%@”: the file's name is too long there. Shorten it or choose another folder, then retry.",
     "Tessaly 无法写入文件夹“%@”：文件名在该处过长。请缩短文件名或选择其他文件夹，然后重试。",
     "Tessaly n’a pas pu écrire dans le dossier « %@ » : le nom du fichier y est trop long. Raccourcissez-le ou choisissez un autre dossier, puis réessayez."},
    {"Tessaly couldn't write to the folder “%@”: the file's name is not allowed there. Change it or choose another folder, then retry.",
     "Tessaly 无法写入文件夹“%@”：该处不允许使用此文件名。请更改文件名或选择其他文件夹，然后重试。",
     "Tessaly n’a pas pu écrire dans le dossier « %@ » : le nom du fichier n’y est pas autorisé. Modifiez-le ou choisissez un autre dossier, puis réessayez."},
    {"Tessaly couldn't write to the folder “%@”: the file is too large for it. Choose another folder, then retry.",
     "Tessaly 无法写入文件夹“%@”：文件对该处而言过大。请选择其他文件夹，然后重试。",
     "Tessaly n’a pas pu écrire dans le dossier « %@ » : le fichier est trop volumineux pour lui. Choisissez un autre dossier, puis réessayez."},
    {"Tessaly couldn't write to the folder “%@”: a file of that name already exists there and was left as it is.",
     "Tessaly 无法写入文件夹“%@”：该处已存在同名文件，未作任何更改。",
     "Tessaly n’a pas pu écrire dans le dossier « %@ » : un fichier de ce nom y existe déjà et a été laissé tel quel."},
    {"Tessaly couldn't write to the folder “%@”: %@",
     "Tessaly 无法写入文件夹“%@”：%@",
     "Tessaly n’a pas pu écrire dans le dossier « %@ » : %@"},

    // What a batch left out or left in place.
    {"Tessaly couldn't look at “%@” and left it out: %@",
     "Tessaly 无法查看“%@”，已将其略过：%@",
     "Tessaly n’a pas pu examiner « %@ » et l’a laissé de côté : %@"},
    {"Tessaly can't tell what became of “%@”. Look for its copy in the output folder.",
     "Tessaly 无法确定“%@”的处理结果。请在输出文件夹中查找其副本。",
     "Tessaly ne sait pas ce qu’est devenu « %@ ». Cherchez sa copie dans le dossier de sortie."},
    {"Left out: %@", "已略过：%@", "Laissés de côté : %@"},
    {"Unaccounted for: %@", "结果不明：%@", "Sort inconnu : %@"},
    {"Unfinished copy left in place: %@ (%@)",
     "未完成的副本已保留在原处：%@（%@）",
     "Copie inachevée laissée en place : %@ (%@)"},
    {"it is no regular file", "它不是普通文件", "ce n’est pas un fichier ordinaire"},
    {"it belongs to another user", "它属于其他用户", "elle appartient à un autre utilisateur"},
    {"it changed within the last day", "它在最近一天内有更改", "elle a changé au cours des dernières 24 heures"},
    {"the system does not let it be removed", "系统不允许删除它", "le système ne permet pas de la supprimer"},
    {"This batch has been started already.", "此批处理已经启动过。", "Ce traitement par lots a déjà été lancé."},
    {"another program is using it", "另一个程序正在使用它", "un autre programme l’utilise"},

    // What the command line tells beside its results, and what candidates and frames are told apart by.
    {"One column lies inside another.",
     "有一列位于另一列之内。",
     "Une colonne se trouve à l’intérieur d’une autre."},
    {"%d columns lie inside others.",
     "有 %d 列位于其他列之内。",
     "%d colonnes se trouvent à l’intérieur d’autres colonnes."},
    {"Of another camera or layout than the rest: %@",
     "与其余文件的相机或结构不同：%@",
     "D’un autre appareil ou d’une autre structure que le reste : %@"},
    {"%@ and %d more",
     "%@ 及另外 %d 个",
     "%@ et %d de plus"},
    {"No profile was kept. Add --save or --profile to keep one.",
     "未保留任何配置文件。如需保留，请加上 --save 或 --profile。",
     "Aucun profil n’a été conservé. Ajoutez --save ou --profile pour en conserver un."},
    {"No stored profile has this name",
     "没有使用此名称的已存储配置文件",
     "Aucun profil enregistré ne porte ce nom"},
    {"Stored profiles: %@",
     "已存储的配置文件：%@",
     "Profils enregistrés : %@"},
    {"No camera profile is stored.",
     "没有已存储的相机配置文件。",
     "Aucun profil d’appareil n’est enregistré."},
    {"One worker is used instead of %d.",
     "使用 1 个工作线程，而不是 %d 个。",
     "Un seul fichier est traité à la fois au lieu de %d."},
    {"%d workers are used instead of %d.",
     "使用 %d 个工作线程，而不是 %d 个。",
     "%d fichiers sont traités à la fois au lieu de %d."},
    {"One file is left.",
     "还剩 1 个文件未处理。",
     "Il reste un fichier à traiter."},
    {"%d files are left.",
     "还剩 %d 个文件未处理。",
     "Il reste %d fichiers à traiter."},
    {"This profile comes back: it also lies in %@",
     "此配置文件还会出现：它也位于 %@",
     "Ce profil reviendra : il se trouve aussi dans %@"},

    {"Set Aside",
     "移到一旁",
     "Mettre de côté"},
    {"Renames the unreadable file so that the other profiles load.",
     "重命名无法读取的文件，使其他配置文件能够载入。",
     "Renomme le fichier illisible pour que les autres profils se chargent."},
    // What the profile creation tab says of additions by hand and of saving again.
    {"Added: %@ (%@)",
     "已添加：%@（%@）",
     "Ajouté : %@ (%@)"},
    {"In the list already, now included: %@ (%@)",
     "已在列表中，现已纳入：%@（%@）",
     "Déjà dans la liste, maintenant inclus : %@ (%@)"},
    {"Removed: %@ (%@)",
     "已移除：%@（%@）",
     "Retiré : %@ (%@)"},
    {"Manual additions removed: %d",
     "已移除的手动添加项：%d",
     "Ajouts manuels retirés : %d"},
    {"Only what was added by hand can be removed. Exclude a detected candidate by its check box.",
     "只能移除手动添加的项目。检测到的候选项可通过其复选框排除。",
     "Seul ce qui a été ajouté à la main peut être retiré. Un candidat détecté s’exclut par sa case à cocher."},
    {"This selection is saved already as “%@”.",
     "此选择已保存为“%@”。",
     "Cette sélection est déjà enregistrée sous « %@ »."},

    // A candidate that tells the same column again.
    {"inside the full column at x %d", "位于整列 x %d 之内", "à l’intérieur de la colonne entière à x %d"},

    // What Qt's own panels say and its catalogues do not translate.
    {"Folder", "文件夹", "Dossier"},
    {"Drive", "驱动器", "Lecteur"},
    {"Unknown", "未知", "Inconnu"},

    // The alert at the end of a batch.
    {"%d succeeded, %d failed, %d skipped", "成功 %d，失败 %d，跳过 %d", "%d réussis, %d échecs, %d ignorés"},
    {"%d files: %@", "%d 个文件：%@", "%d fichiers : %@"},
    {"Log: %@", "日志：%@", "Journal : %@"},
  };
  return rows;
}
// clang-format on

}  // namespace

std::span<const Entry> additions() {
  return table();
}

}  // namespace tessaly::Localization
