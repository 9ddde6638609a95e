<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pt" sourcelanguage="zh_CN">
<context>
    <name>texts</name>
    <message>
        <source>browser.download</source>
        <translation>Baixar</translation>
    </message>
    <message>
        <source>browser.downloadEllipsis</source>
        <translation>Baixar...</translation>
    </message>
    <message>
        <source>browser.empty.hint</source>
        <translation>Monte um NAS na janela principal para explorar os arquivos.</translation>
    </message>
    <message>
        <source>browser.empty.title</source>
        <translation>Nenhum NAS montado</translation>
    </message>
    <message>
        <source>browser.fileExists</source>
        <translation>O arquivo já existe</translation>
    </message>
    <message>
        <source>browser.fileExistsMessage</source>
        <translation>"%@" já existe neste local.</translation>
    </message>
    <message>
        <source>browser.open</source>
        <translation>Abrir</translation>
    </message>
    <message>
        <source>browser.openInFinder</source>
        <translation>Abrir no gerenciador de arquivos</translation>
    </message>
    <message>
        <source>browser.overwrite</source>
        <translation>Substituir</translation>
    </message>
    <message>
        <source>browser.quickLook</source>
        <translation>Pré-visualizar</translation>
    </message>
    <message>
        <source>browser.rename</source>
        <translation>Renomear</translation>
    </message>
    <message>
        <source>browser.showInFinder</source>
        <translation>Mostrar no gerenciador de arquivos</translation>
    </message>
    <message>
        <source>browser.skip</source>
        <translation>Ignorar</translation>
    </message>
    <message>
        <source>common.add</source>
        <translation>Adicionar</translation>
    </message>
    <message>
        <source>common.cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>common.close</source>
        <translation>Fechar</translation>
    </message>
    <message>
        <source>common.delete</source>
        <translation>Excluir</translation>
    </message>
    <message>
        <source>common.save</source>
        <translation>Salvar</translation>
    </message>
    <message>
        <source>filesystem.offline.empty</source>
        <translation>O NAS está desconectado. Nenhum arquivo desta pasta está em cache.</translation>
    </message>
    <message>
        <source>language.system</source>
        <translation>Idioma do sistema</translation>
    </message>
    <message>
        <source>main.about</source>
        <translation>Sobre o Harbrix</translation>
    </message>
    <message>
        <source>main.addNAS</source>
        <translation>Adicionar NAS</translation>
    </message>
    <message>
        <source>main.addNASTooltip</source>
        <translation>Adicionar uma nova configuração de NAS</translation>
    </message>
    <message>
        <source>main.emptyDetailHint</source>
        <translation>Escolha uma configuração na lista à esquerda ou clique no botão acima para adicionar um novo NAS.</translation>
    </message>
    <message>
        <source>main.mountedFoldersTitle</source>
        <translation>Pastas montadas</translation>
    </message>
    <message>
        <source>main.nasList</source>
        <translation>Lista de NAS</translation>
    </message>
    <message>
        <source>main.noConfigs</source>
        <translation>Nenhum NAS configurado</translation>
    </message>
    <message>
        <source>main.openInFinder</source>
        <translation>Abrir pasta</translation>
    </message>
    <message>
        <source>main.openSettings</source>
        <translation>Abrir as configurações</translation>
    </message>
    <message>
        <source>main.selectOrAddNAS</source>
        <translation>Selecione ou adicione um NAS</translation>
    </message>
    <message>
        <source>menubar.about</source>
        <translation>Sobre o Harbrix</translation>
    </message>
    <message>
        <source>menubar.browseFiles</source>
        <translation>  Explorar arquivos...</translation>
    </message>
    <message>
        <source>menubar.checkForUpdates</source>
        <translation>Verificar atualizações...</translation>
    </message>
    <message>
        <source>menubar.icon.accessibility</source>
        <translation>Estado do Harbrix</translation>
    </message>
    <message>
        <source>menubar.mountAll</source>
        <translation>Montar tudo agora</translation>
    </message>
    <message>
        <source>menubar.noConfigs</source>
        <translation>Nenhum NAS configurado</translation>
    </message>
    <message>
        <source>menubar.openMainWindow</source>
        <translation>Abrir a janela principal</translation>
    </message>
    <message>
        <source>menubar.openSettings</source>
        <translation>Configurações...</translation>
    </message>
    <message>
        <source>menubar.quit</source>
        <translation>Sair do Harbrix</translation>
    </message>
    <message>
        <source>menubar.recentFiles</source>
        <translation>Arquivos recentes</translation>
    </message>
    <message>
        <source>menubar.unmountAll</source>
        <translation>Desmontar tudo agora</translation>
    </message>
    <message>
        <source>nas.address</source>
        <translation>Endereço</translation>
    </message>
    <message>
        <source>nas.addressPlaceholder</source>
        <translation>ex.: 192.168.1.100</translation>
    </message>
    <message>
        <source>nas.auth</source>
        <translation>Autenticação</translation>
    </message>
    <message>
        <source>nas.authMethod</source>
        <translation>Método de autenticação</translation>
    </message>
    <message>
        <source>nas.autoMount</source>
        <translation>Montar automaticamente</translation>
    </message>
    <message>
        <source>nas.basicInfo</source>
        <translation>Geral</translation>
    </message>
    <message>
        <source>nas.connectionFailed</source>
        <translation>Falha na conexão: %@</translation>
    </message>
    <message>
        <source>nas.connectionSuccess</source>
        <translation>Conexão bem-sucedida (latência: %@ ms)</translation>
    </message>
    <message>
        <source>nas.customMountPoint</source>
        <translation>Ponto de montagem personalizado</translation>
    </message>
    <message>
        <source>nas.mount</source>
        <translation>Montar</translation>
    </message>
    <message>
        <source>nas.mountError</source>
        <translation>Problema na montagem</translation>
    </message>
    <message>
        <source>nas.mountOptions</source>
        <translation>Opções de montagem</translation>
    </message>
    <message>
        <source>nas.mountPointExample1</source>
        <translation>Exemplo: ~/HarbrixVolumes/MyNAS (recomendado, criado automaticamente)</translation>
    </message>
    <message>
        <source>nas.mountPointExample2</source>
        <translation>Exemplo: /mnt/MyNAS (a pasta precisa ser criada manualmente)</translation>
    </message>
    <message>
        <source>nas.mountPointHelp</source>
        <translation>Onde o compartilhamento é montado. Deixe em branco para usar ~/HarbrixVolumes/&lt;nome&gt;. Nota: pastas fora da sua pasta pessoal, como em /mnt/, precisam ser criadas manualmente.</translation>
    </message>
    <message>
        <source>nas.mountPointPlaceholder</source>
        <translation>Vazio: caminho padrão</translation>
    </message>
    <message>
        <source>nas.mounting</source>
        <translation>Montando...</translation>
    </message>
    <message>
        <source>nas.name</source>
        <translation>Nome</translation>
    </message>
    <message>
        <source>nas.namePlaceholder</source>
        <translation>ex.: NAS de casa</translation>
    </message>
    <message>
        <source>nas.networkBinding</source>
        <translation>Restrição de rede</translation>
    </message>
    <message>
        <source>nas.networkBinding.currentIP</source>
        <translation>Rede atual: %@</translation>
    </message>
    <message>
        <source>nas.networkBinding.hint</source>
        <translation>Este NAS só é montado automaticamente nas redes correspondentes. A montagem manual é sempre possível.</translation>
    </message>
    <message>
        <source>nas.networkBinding.ipRange</source>
        <translation>Intervalo de IP (CIDR)</translation>
    </message>
    <message>
        <source>nas.networkBinding.ipRange.placeholder</source>
        <translation>ex.: 192.168.3.0/24</translation>
    </message>
    <message>
        <source>nas.networkBinding.preset.allNetworks</source>
        <translation>Todas as redes</translation>
    </message>
    <message>
        <source>nas.networkBinding.preset.currentIP</source>
        <translation>IP atual</translation>
    </message>
    <message>
        <source>nas.networkBinding.preset.currentNetwork</source>
        <translation>Rede atual</translation>
    </message>
    <message>
        <source>nas.networkBinding.ssid.add</source>
        <translation>Nome do Wi-Fi</translation>
    </message>
    <message>
        <source>nas.networkBinding.strategy</source>
        <translation>Restringir por</translation>
    </message>
    <message>
        <source>nas.networkMismatch.confirm</source>
        <translation>Conectar mesmo assim</translation>
    </message>
    <message>
        <source>nas.networkMismatch.message</source>
        <translation>A rede atual não está entre as permitidas para este NAS, por isso a conexão pode falhar. Tentar mesmo assim?</translation>
    </message>
    <message>
        <source>nas.networkMismatch.title</source>
        <translation>A rede não corresponde</translation>
    </message>
    <message>
        <source>nas.openInFinder</source>
        <translation>Abrir</translation>
    </message>
    <message>
        <source>nas.password</source>
        <translation>Senha</translation>
    </message>
    <message>
        <source>nas.passwordPlaceholder</source>
        <translation>Senha de acesso</translation>
    </message>
    <message>
        <source>nas.protocol</source>
        <translation>Protocolo</translation>
    </message>
    <message>
        <source>nas.readOnly</source>
        <translation>Montar somente para leitura</translation>
    </message>
    <message>
        <source>nas.sharePath</source>
        <translation>Caminho do compartilhamento</translation>
    </message>
    <message>
        <source>nas.sharePathPlaceholder</source>
        <translation>ex.: /shared/media</translation>
    </message>
    <message>
        <source>nas.smbVersion</source>
        <translation>Versão do SMB</translation>
    </message>
    <message>
        <source>nas.testConnection</source>
        <translation>Testar conexão</translation>
    </message>
    <message>
        <source>nas.testingConnection</source>
        <translation>Testando a conexão...</translation>
    </message>
    <message>
        <source>nas.unmount</source>
        <translation>Desmontar</translation>
    </message>
    <message>
        <source>nas.username</source>
        <translation>Nome de usuário</translation>
    </message>
    <message>
        <source>nas.usernamePlaceholder</source>
        <translation>Usuário de acesso</translation>
    </message>
    <message>
        <source>network.status.allMismatch</source>
        <translation>A rede não corresponde</translation>
    </message>
    <message>
        <source>network.status.ipMismatch</source>
        <translation>O IP não corresponde</translation>
    </message>
    <message>
        <source>network.status.matched</source>
        <translation>A rede corresponde</translation>
    </message>
    <message>
        <source>network.status.ssidMismatch</source>
        <translation>O SSID não corresponde</translation>
    </message>
    <message>
        <source>nfs.auth</source>
        <translation>Autenticação NFS</translation>
    </message>
    <message>
        <source>nfs.error.emptySharePath</source>
        <translation>O caminho de exportação NFS não pode ficar vazio</translation>
    </message>
    <message>
        <source>nfs.error.invalidArgument</source>
        <translation>O mount_nfs recebeu um argumento inválido. Verifique o endereço do servidor NFS e o caminho de exportação. No momento, só há suporte a NFSv4.</translation>
    </message>
    <message>
        <source>nfs.error.sudoRequired</source>
        <translation>A montagem de NFS requer privilégios de root. Configure o sudoers em um terminal para permitir o mount_nfs sem senha, ou monte o compartilhamento manualmente e use um ponto de montagem personalizado.</translation>
    </message>
    <message>
        <source>nfs.mountOptions.detail</source>
        <translation>Opções fixas: vers=4 (NFSv4), tcp (transporte TCP), noresvport (porta sem privilégios); na montagem somente para leitura, acrescenta-se ro.</translation>
    </message>
    <message>
        <source>nfs.mountOptions.title</source>
        <translation>Opções de montagem NFSv4</translation>
    </message>
    <message>
        <source>nfs.noAuthNote</source>
        <translation>O NFS não precisa de nome de usuário nem de senha. O acesso é controlado pela configuração de exportações (exports) do servidor NFS.</translation>
    </message>
    <message>
        <source>nfs.sharePath</source>
        <translation>Caminho de exportação NFS</translation>
    </message>
    <message>
        <source>nfs.sharePathPlaceholder</source>
        <translation>ex.: / ou /volume1/shared</translation>
    </message>
    <message>
        <source>nfs.versionNote</source>
        <translation>No momento, só há suporte a NFSv4 (via TCP, a partir de uma porta sem privilégios)</translation>
    </message>
    <message>
        <source>notification.action.retry</source>
        <translation>Tentar novamente</translation>
    </message>
    <message>
        <source>notification.event.cacheCleanup</source>
        <translation>Limpeza do cache</translation>
    </message>
    <message>
        <source>notification.event.mountFailure</source>
        <translation>Falha na montagem</translation>
    </message>
    <message>
        <source>notification.event.mountSuccess</source>
        <translation>Montagem concluída</translation>
    </message>
    <message>
        <source>notification.event.networkChange</source>
        <translation>Mudança de rede</translation>
    </message>
    <message>
        <source>notification.event.transferComplete</source>
        <translation>Transferência concluída</translation>
    </message>
    <message>
        <source>notification.event.transferFailed</source>
        <translation>Falha na transferência</translation>
    </message>
    <message>
        <source>notification.event.unmount</source>
        <translation>Desmontagem</translation>
    </message>
    <message>
        <source>notification.mount.failure.body</source>
        <translation>%1$@: %2$@</translation>
    </message>
    <message>
        <source>notification.mount.failure.title</source>
        <translation>Falha na conexão com o NAS</translation>
    </message>
    <message>
        <source>notification.mount.success.body</source>
        <translation>%@ foi montado</translation>
    </message>
    <message>
        <source>notification.mount.success.title</source>
        <translation>NAS conectado</translation>
    </message>
    <message>
        <source>notification.transfer.download.body</source>
        <translation>%@ foi baixado</translation>
    </message>
    <message>
        <source>notification.transfer.download.title</source>
        <translation>Download concluído</translation>
    </message>
    <message>
        <source>notification.transfer.upload.body</source>
        <translation>%@ foi enviado para o NAS</translation>
    </message>
    <message>
        <source>notification.transfer.upload.title</source>
        <translation>Envio concluído</translation>
    </message>
    <message>
        <source>notification.unmount.body</source>
        <translation>%@ foi desmontado</translation>
    </message>
    <message>
        <source>notification.unmount.title</source>
        <translation>NAS desconectado</translation>
    </message>
    <message>
        <source>settings.advanced.connectionTimeout</source>
        <translation>Tempo limite de conexão</translation>
    </message>
    <message>
        <source>settings.advanced.retry</source>
        <translation>Novas tentativas</translation>
    </message>
    <message>
        <source>settings.advanced.retry.hint</source>
        <translation>O que fazer depois de uma falha na montagem. O intervalo aumenta a cada tentativa (espera exponencial).</translation>
    </message>
    <message>
        <source>settings.advanced.retryCount</source>
        <translation>Número de tentativas</translation>
    </message>
    <message>
        <source>settings.advanced.retryInterval</source>
        <translation>Intervalo entre tentativas</translation>
    </message>
    <message>
        <source>settings.advanced.smb</source>
        <translation>Protocolo SMB</translation>
    </message>
    <message>
        <source>settings.advanced.smbVersion</source>
        <translation>Versão padrão do SMB</translation>
    </message>
    <message>
        <source>settings.advanced.timeout</source>
        <translation>Tempos limite</translation>
    </message>
    <message>
        <source>settings.advanced.timeout.hint</source>
        <translation>O tempo máximo de espera pela conexão com um NAS. Um tempo maior ajuda em redes lentas.</translation>
    </message>
    <message>
        <source>settings.cache.autoCleanup</source>
        <translation>Limpeza automática</translation>
    </message>
    <message>
        <source>settings.cache.autoCleanup.toggle</source>
        <translation>Limpar automaticamente</translation>
    </message>
    <message>
        <source>settings.cache.cleanupNow</source>
        <translation>Limpar agora</translation>
    </message>
    <message>
        <source>settings.cache.clearAll</source>
        <translation>Limpar todo o cache</translation>
    </message>
    <message>
        <source>settings.cache.diskSpace</source>
        <translation>Espaço livre em disco</translation>
    </message>
    <message>
        <source>settings.cache.entryCount</source>
        <translation>Arquivos em cache</translation>
    </message>
    <message>
        <source>settings.cache.hitRate</source>
        <translation>Taxa de acertos</translation>
    </message>
    <message>
        <source>settings.cache.lastCleanup</source>
        <translation>Última limpeza</translation>
    </message>
    <message>
        <source>settings.cache.lastRemoved</source>
        <translation>Arquivos removidos</translation>
    </message>
    <message>
        <source>settings.cache.maxSize</source>
        <translation>Tamanho máximo do cache</translation>
    </message>
    <message>
        <source>settings.cache.totalSize</source>
        <translation>Espaço usado</translation>
    </message>
    <message>
        <source>settings.cache.usage</source>
        <translation>Uso do cache</translation>
    </message>
    <message>
        <source>settings.keepAlive.enabled</source>
        <translation>Manter as conexões ativas</translation>
    </message>
    <message>
        <source>settings.keepAlive.hint</source>
        <translation>O Harbrix verifica periodicamente a conexão com os NAS montados. Se ela cair enquanto você ainda estiver na rede doméstica, ele tenta montá-los novamente.</translation>
    </message>
    <message>
        <source>settings.keepAlive.interval</source>
        <translation>Intervalo de verificação</translation>
    </message>
    <message>
        <source>settings.keepAlive.title</source>
        <translation>Manutenção da conexão</translation>
    </message>
    <message>
        <source>settings.language.app</source>
        <translation>Idioma do aplicativo</translation>
    </message>
    <message>
        <source>settings.language.disclaimer</source>
        <translation>Algumas traduções podem estar incompletas; os textos em falta aparecem em inglês. Continuamos a melhorá-las e pedimos desculpas pelo incômodo.</translation>
    </message>
    <message>
        <source>settings.language.restartHint</source>
        <translation>Depois de mudar o idioma, recomenda-se reiniciar o aplicativo para que a mudança tenha efeito em todas as janelas.</translation>
    </message>
    <message>
        <source>settings.language.select</source>
        <translation>Escolher idioma</translation>
    </message>
    <message>
        <source>settings.language.supported</source>
        <translation>Sobre as traduções</translation>
    </message>
    <message>
        <source>settings.launch.atLogin</source>
        <translation>Iniciar com a sessão</translation>
    </message>
    <message>
        <source>settings.launch.atLogin.hint</source>
        <translation>O Harbrix é iniciado automaticamente com a sua sessão e fica na bandeja do sistema.</translation>
    </message>
    <message>
        <source>settings.launch.autoMount</source>
        <translation>Montagem automática</translation>
    </message>
    <message>
        <source>settings.launch.autoMount.hint</source>
        <translation>Ao iniciar, o aplicativo monta automaticamente todos os NAS ativados cuja rede corresponda.</translation>
    </message>
    <message>
        <source>settings.launch.autoMount.toggle</source>
        <translation>Montar ao iniciar</translation>
    </message>
    <message>
        <source>settings.launch.behavior</source>
        <translation>Inicialização</translation>
    </message>
    <message>
        <source>settings.launch.stability.binding</source>
        <translation>Restrição de rede: montagem automática somente nas redes domésticas correspondentes</translation>
    </message>
    <message>
        <source>settings.launch.stability.network</source>
        <translation>Mudança de rede: espera 2 segundos até a rede estabilizar antes de montar</translation>
    </message>
    <message>
        <source>settings.launch.stability.retry</source>
        <translation>Espera exponencial: novas tentativas após 10s→30s→60s→300s</translation>
    </message>
    <message>
        <source>settings.launch.stability.title</source>
        <translation>Como as conexões se mantêm estáveis</translation>
    </message>
    <message>
        <source>settings.launch.stability.wake</source>
        <translation>Suspensão: monta novamente quando o sistema é retomado</translation>
    </message>
    <message>
        <source>settings.logging.actions</source>
        <translation>Ações</translation>
    </message>
    <message>
        <source>settings.logging.clear</source>
        <translation>Limpar logs</translation>
    </message>
    <message>
        <source>settings.logging.debug</source>
        <translation>Modo de depuração</translation>
    </message>
    <message>
        <source>settings.logging.debug.hint</source>
        <translation>Registra informações de depuração detalhadas; pode afetar o desempenho.</translation>
    </message>
    <message>
        <source>settings.logging.export</source>
        <translation>Exportar logs</translation>
    </message>
    <message>
        <source>settings.logging.file</source>
        <translation>Saída em arquivo</translation>
    </message>
    <message>
        <source>settings.logging.fileSize</source>
        <translation>Tamanho dos arquivos de log</translation>
    </message>
    <message>
        <source>settings.logging.fileToggle</source>
        <translation>Gravar em um arquivo de log</translation>
    </message>
    <message>
        <source>settings.logging.level</source>
        <translation>Nível de log</translation>
    </message>
    <message>
        <source>settings.logging.minLevel</source>
        <translation>Nível mínimo</translation>
    </message>
    <message>
        <source>settings.logging.mode</source>
        <translation>Modo de log</translation>
    </message>
    <message>
        <source>settings.notification.enableAll</source>
        <translation>Ativar todas as notificações</translation>
    </message>
    <message>
        <source>settings.notification.events</source>
        <translation>Eventos</translation>
    </message>
    <message>
        <source>settings.notification.global</source>
        <translation>Geral</translation>
    </message>
    <message>
        <source>settings.notification.reset</source>
        <translation>Restaurar padrões</translation>
    </message>
    <message>
        <source>settings.notification.systemHint</source>
        <translation>Verifique se as configurações do sistema permitem notificações do Harbrix.</translation>
    </message>
    <message>
        <source>settings.tab.advanced</source>
        <translation>Avançado</translation>
    </message>
    <message>
        <source>settings.tab.cache</source>
        <translation>Cache</translation>
    </message>
    <message>
        <source>settings.tab.language</source>
        <translation>Idioma</translation>
    </message>
    <message>
        <source>settings.tab.launch</source>
        <translation>Inicialização</translation>
    </message>
    <message>
        <source>settings.tab.logging</source>
        <translation>Logs</translation>
    </message>
    <message>
        <source>settings.tab.notifications</source>
        <translation>Notificações</translation>
    </message>
    <message>
        <source>status.failed</source>
        <translation>Falha</translation>
    </message>
    <message>
        <source>status.failed.a11y</source>
        <translation>Falha na montagem</translation>
    </message>
    <message>
        <source>status.idle</source>
        <translation>Inativo</translation>
    </message>
    <message>
        <source>status.mounted</source>
        <translation>Montado</translation>
    </message>
    <message>
        <source>status.mounting</source>
        <translation>Montando...</translation>
    </message>
    <message>
        <source>status.offline</source>
        <translation>Offline</translation>
    </message>
    <message>
        <source>status.unmounting</source>
        <translation>Desmontando...</translation>
    </message>
    <message>
        <source>status.unmounting.a11y</source>
        <translation>Desmontando</translation>
    </message>
    <message numerus="yes">
        <source>transfer.activeCount</source>
        <translation>
            <numerusform>%lld ativa</numerusform>
            <numerusform>%lld ativas</numerusform>
        </translation>
    </message>
    <message>
        <source>transfer.cancelled</source>
        <translation>Cancelada</translation>
    </message>
    <message>
        <source>transfer.clearCompleted</source>
        <translation>Limpar transferências concluídas</translation>
    </message>
    <message>
        <source>transfer.done</source>
        <translation>Concluída</translation>
    </message>
    <message>
        <source>transfer.eta</source>
        <translation>Tempo restante: %@</translation>
    </message>
    <message>
        <source>transfer.failed</source>
        <translation>Falha</translation>
    </message>
    <message>
        <source>transfer.noTransfers</source>
        <translation>Nenhuma transferência</translation>
    </message>
    <message>
        <source>transfer.paused</source>
        <translation>Em pausa</translation>
    </message>
    <message>
        <source>transfer.queued</source>
        <translation>Na fila</translation>
    </message>
    <message>
        <source>transfer.stop.confirm</source>
        <translation>Parar</translation>
    </message>
    <message>
        <source>transfer.stop.message</source>
        <translation>O que ainda não foi copiado não será copiado.</translation>
    </message>
    <message>
        <source>transfer.stop.title</source>
        <translation>Parar as transferências?</translation>
    </message>
    <message>
        <source>transfer.title</source>
        <translation>Transferências</translation>
    </message>
    <message>
        <source>window.about.title</source>
        <translation>Sobre o Harbrix</translation>
    </message>
    <message>
        <source>window.browser.title</source>
        <translation>Explorador de arquivos</translation>
    </message>
    <message>
        <source>window.main.title</source>
        <translation>Harbrix</translation>
    </message>
    <message>
        <source>window.settings.title</source>
        <translation>Configurações</translation>
    </message>
    <message>
        <source>Loading...</source>
        <translation>Carregando...</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Nome</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Tamanho</translation>
    </message>
    <message>
        <source>Modified</source>
        <translation>Modificado</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Abrir</translation>
    </message>
    <message>
        <source>Show in Finder</source>
        <translation>Mostrar no gerenciador de arquivos</translation>
    </message>
    <message>
        <source>Empty Folder</source>
        <translation>Pasta vazia</translation>
    </message>
    <message>
        <source>Drag files here to upload</source>
        <translation>Arraste arquivos para cá para enviá-los</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>main.discardChanges</source>
        <translation>Descartar alterações</translation>
    </message>
    <message>
        <source>main.edited</source>
        <translation>Editado</translation>
    </message>
    <message>
        <source>main.notSaved</source>
        <translation>Não é possível salvar as alterações: %@. Elas serão perdidas ao sair do Harbrix.</translation>
    </message>
    <message>
        <source>notification.settingsDamaged.body</source>
        <translation>O arquivo foi guardado como %@</translation>
    </message>
    <message>
        <source>notification.settingsDamaged.title</source>
        <translation>Os ajustes estavam danificados</translation>
    </message>
    <message>
        <source>官网</source>
        <translation>Site</translation>
    </message>
    <message>
        <source>反馈</source>
        <translation>Comentários</translation>
    </message>
    <message>
        <source>文档</source>
        <translation>Documentação</translation>
    </message>
</context>
</TS>
